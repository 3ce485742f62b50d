#pragma once

class FileURL;

/// Hides items from a search by their paths. Threads: all calls from several at once.
class ItemPathFilter {
  public:
    virtual ~ItemPathFilter() = default;
    virtual bool hasRules() const = 0;
    virtual bool isPathExcluded(const FileURL& path) const = 0;
};
