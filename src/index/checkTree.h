#pragma once
#include <string>

class Cache;

/// Whether everything holds that must hold of a Cache's tree, array and columns. For tests and for
/// hunting faults: it visits every item. Enters a read section.
/// Answers what is wrong first, or nothing.
std::string checkTree(Cache& cache);
