#pragma once
#include <memory>

#include "util/Observable.h"

class Project;

/// What parts of the program tell whoever wants to know. A null project: it concerns all.
/// Owner:   World (sharedInstance). Threads: observers are called on the posting thread.
struct Notifications {
    static Notifications& sharedInstance();

    /// What an index was made by: it must be made anew. Posted on the main thread.
    Signal<std::shared_ptr<const Project>> scanParameterModified;
    /// What a search goes by: search again. Not posted on the main thread.
    Signal<std::shared_ptr<const Project>> searchParameterModified;
    Signal<> fontWeightChanged;
};
