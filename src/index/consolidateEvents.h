#pragma once
#include "platform/FileEvents.h"
#include "util/FunctionRef.h"

/// Sorted by id, ascending; of events with one id the first stays.
/// debug: whether each one that is dropped gets a line in the log.
void consolidateEvents(FileEventBatch& events, bool debug);

/// What a stream calls: hands on what says anything at all, as one operation, if anything is left.
void projectFsEventCallback(const FileEventBatch& events,
                            FunctionRef<void(FileEventBatch)> addOperation);
