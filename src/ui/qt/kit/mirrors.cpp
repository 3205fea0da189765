#include "ui/qt/kit/mirrors.h"

#include <QAbstractEventDispatcher>
#include <algorithm>

namespace kavorix {

Mirrors::Mirrors(QtEventLoop& loop) : loop_(loop) {
    before_waiting_ = QObject::connect(QAbstractEventDispatcher::instance(),
                                       &QAbstractEventDispatcher::aboutToBlock,
                                       [this] { loop_.dispatch([this] { refresh(); }); });
}

Mirrors::~Mirrors() {
    QObject::disconnect(before_waiting_);
}

void Mirrors::remove(Mirror& mirror) {
    mirrors_.erase(std::remove(mirrors_.begin(), mirrors_.end(), &mirror), mirrors_.end());
}

void Mirrors::refresh() {
    // By position: a refresh may open or close another mirror.
    for (std::size_t i = 0; i < mirrors_.size(); ++i) mirrors_[i]->refresh();
}

}  // namespace kavorix
