#pragma once
#include <QString>

#include "screen/RowAction.h"
#include "screen/RowContent.h"

/// A row in words: for assistive technologies, and for the tool tip over what is short in it. Pure.
namespace rowSpeech {

/// Its name, and what badges say of it.
QString name(const RowContent& row, bool isBrokenLink = false);
/// Folder and metadata, each sign replaced by what it stands for.
QString details(const RowContent& row);
/// What Return does to it.
QString action(const RowAction& action);
/// Name and details line by line, in full length.
QString toolTip(const RowContent& row);

}  // namespace rowSpeech
