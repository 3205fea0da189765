#pragma once

// When the screen follows the records: before the program waits for events, and on demand.

#include <QMetaObject>
#include <vector>

#include "ui/qt/kit/qt_event_loop.h"

namespace kavorix {

// Something on the screen that shows a record.
class Mirror {
  public:
    virtual ~Mirror() = default;

    // Brings the widgets to what the record says. Called often; must be cheap when nothing has
    // changed.
    virtual void refresh() = 0;
};

// The open mirrors. Rules change records without telling anybody; whenever the toolkit has no event
// left to handle, all mirrors are refreshed. Outlives its mirrors.
class Mirrors {
  public:
    explicit Mirrors(QtEventLoop& loop);
    ~Mirrors();
    Mirrors(const Mirrors&) = delete;
    Mirrors& operator=(const Mirrors&) = delete;

    void add(Mirror& mirror) { mirrors_.push_back(&mirror); }
    void remove(Mirror& mirror);

    void refresh();

    QtEventLoop& loop() { return loop_; }

  private:
    QtEventLoop& loop_;
    std::vector<Mirror*> mirrors_;
    QMetaObject::Connection before_waiting_;
};

}  // namespace kavorix
