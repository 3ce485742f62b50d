#pragma once

/// How urgent a queue's work is; the numbers are the ones that the log and the settings know.
/// Nothing is urgent beyond the default here: the two lower ones become nice values of the threads
/// and, for background, idle input and output.
enum class Qos { background = 9, utility = 17, userInitiated = 25, userInteractive = 33 };

/// Gives the calling thread a queue's name and urgency.
void enterQueueThread(const char* label, Qos qos);
