#pragma once

#include <QStringList>

#include "ui/qt/kit/window_memory.h"

namespace kavorix {

// The files that were used last, newest first, kept where windows remember their places.
class RecentFiles {
  public:
    static constexpr int Most = 8;

    explicit RecentFiles(WindowMemory memory) : memory_(std::move(memory)) {}

    // Those that are still there.
    QStringList paths() const;

    void add(const QString& path);

  private:
    WindowMemory memory_;
};

}  // namespace kavorix
