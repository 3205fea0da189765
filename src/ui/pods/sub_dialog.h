#pragma once

// The end of a modal dialog that the pod configuration dialog opens.

#include <string>

namespace kavorix {

class SubDialog {
  public:
    // The operator is done with it: its window goes.
    bool closed() const { return closed_; }

    // Something was stored in the working copy.
    bool changed() const { return changed_; }

    void cmdCancel_Click() { closed_ = true; }

    SubDialog(const SubDialog&) = delete;
    SubDialog& operator=(const SubDialog&) = delete;

  protected:
    SubDialog() = default;
    ~SubDialog() = default;

    void close() { closed_ = true; }
    void mark_changed() { changed_ = true; }

    // Stores a value that is another one than before.
    template <class Value>
    void store(Value& stored, const Value& value) {
        if (stored == value) return;
        stored = value;
        mark_changed();
    }

  private:
    bool closed_ = false;
    bool changed_ = false;
};

}  // namespace kavorix
