#pragma once
#include "platform/DiskAccess.h"

/// A program may read here what its user may read: there is no consent to ask for.
/// Owner:   main. Threads: main.
class FullAccess : public DiskAccess {
  public:
    int openProtectedFile() const override { return 0; }
    const char* protectedFile() const override { return ""; }
    void openSecurityAndPrivacy() override {}
};
