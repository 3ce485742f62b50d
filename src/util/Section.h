#pragma once
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

class Section;

/// Proof of being inside a section, for reading. Made by Section alone, never copied or kept: a
/// function that takes one cannot be called outside.
class ReadSection {
  public:
    ReadSection(const ReadSection&) = delete;
    ReadSection& operator=(const ReadSection&) = delete;

  protected:
    friend class Section;
    ReadSection() = default;
};

/// Proof of being alone inside a section; good for reading too.
class WriteSection : public ReadSection {
    friend class Section;
    WriteSection() = default;
};

/// A reader-writer lock that serves strictly in the order of arrival (neighbouring readers go in
/// together), so that neither side starves: std::shared_mutex and the default pthread lock let a
/// writer wait for as long as readers overlap.
/// Threads: any. A thread inside a section enters only sections of a higher order (the index comes
/// before the rows that point into it); anything else could hang one day. It is logged at error
/// level, and ends the program where it could only hang: the same section again, for writing.
class Section {
  public:
    explicit Section(std::string label, int order = 1) : label_(std::move(label)), order_(order) {}
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;

    /// Runs f(const ReadSection&) beside other readers; answers what f answers.
    template <class F>
    decltype(auto) read(F&& f) {
        const Inside inside(*this, false);
        const ReadSection token;
        return std::forward<F>(f)(token);
    }
    /// Runs f(const WriteSection&) alone.
    template <class F>
    decltype(auto) write(F&& f) {
        const Inside inside(*this, true);
        const WriteSection token;
        return std::forward<F>(f)(token);
    }
    /// The same if nobody is inside or waiting, else false at once.
    template <class F>
    bool tryWrite(F&& f) {
        if (!tryEnter()) return false;
        const Inside inside(*this, true, Inside::entered);
        const WriteSection token;
        std::forward<F>(f)(token);
        return true;
    }
    const std::string& label() const { return label_; }
    /// Whether this thread is inside a section, whichever.
    static bool isThreadInside();

  private:
    /// Enters and leaves, and keeps the thread's own list for the nesting check.
    class Inside {
      public:
        enum Already { entered };
        Inside(Section& section, bool exclusive);
        Inside(Section& section, bool exclusive, Already);
        ~Inside();
        Inside(const Inside&) = delete;
        Inside& operator=(const Inside&) = delete;
        const Section* section() const { return &section_; }

      private:
        friend class Section;
        Section& section_;
        const bool exclusive_;
        bool nested_ = false;  // the same section, entered by this thread before: nothing to leave
        Inside* outer_;
    };
    struct Waiter {
        bool exclusive;
        bool admitted = false;
        std::condition_variable condition = {};
    };

    void enter(bool exclusive);
    bool tryEnter();
    void leave(bool exclusive);
    void admitWaiting();

    const std::string label_;
    const int order_;
    std::mutex mutex_;
    std::deque<Waiter*> waiting_;
    int readers_ = 0;
    bool writing_ = false;
};
