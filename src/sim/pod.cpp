#include "sim/pod.h"

#include <cmath>
#include <utility>

namespace kavorix::sim {

namespace {

// Unread texts beyond this number are lost.
constexpr std::size_t MostTexts = 16;

std::int64_t milliseconds(double time_s) {
    return static_cast<std::int64_t>(std::llround(time_s * 1000.0));
}

template <class Item>
std::optional<Item> take_front(std::deque<Item>& queue, std::int64_t now_ms) {
    if (queue.empty() || queue.front().ready_ms > now_ms) return std::nullopt;
    Item item = std::move(queue.front());
    queue.pop_front();
    return item;
}

}  // namespace

Pod::Pod(const PodSettings& settings, SimClock& clock, const RandomSource& random)
    : settings_(settings),
      clock_(clock),
      front_(settings, held_, random.child(1)),
      scanner_(front_, held_),
      events_(front_, held_, clock) {
    for (const PodText& text : settings.texts) next_text_ms_.push_back(milliseconds(text.at_s));
    reset();
}

void Pod::reset() {
    held_ = {};
    scanner_.clear();
    answers_.clear();
    events_.clear();
    texts_.clear();
    busy_until_ms_ = 0;
    refused_ = 0;
    set_default_modes();
}

void Pod::advance() {
    const std::int64_t now_ms = clock_.now_ms();
    if (now_ms == std::exchange(now_ms_, now_ms)) return;
    scanner_.advance(now_ms);
    events_.advance(now_ms);
    send_due_texts();
}

void Pod::send_due_texts() {
    for (std::size_t i = 0; i < next_text_ms_.size(); ++i) {
        std::int64_t& next = next_text_ms_[i];
        const PodText& text = settings_.texts[i];
        if (next < 0 || next > now_ms_) continue;
        push_text(text.text);
        const std::int64_t every = milliseconds(text.every_s);
        next = every > 0 ? next + ((now_ms_ - next) / every + 1) * every : -1;
    }
}

void Pod::push_text(std::string text) {
    if (texts_.size() < MostTexts)
        texts_.push_back({now_ms_ + settings_.answer_ms, std::move(text)});
}

bool Pod::waiting(int stream, int delay_ms) {
    advance();
    std::optional<std::int64_t> since_ms;
    if (stream == 0) since_ms = scanner_.finished_ms();
    if (stream == 1 && !answers_.empty()) since_ms = answers_.front().ready_ms;
    if (stream == 2) since_ms = events_.oldest_ms();
    if (stream == 3 && !texts_.empty()) since_ms = texts_.front().ready_ms;
    return since_ms && *since_ms + delay_ms <= now_ms_;
}

std::optional<FrontEnd::Readings> Pod::take_scan() {
    advance();
    return scanner_.take();
}

std::optional<Pod::Answer> Pod::take_answer() {
    advance();
    return take_front(answers_, now_ms_);
}

std::optional<std::string> Pod::take_events(std::size_t size) {
    advance();
    return events_.take(size);
}

std::optional<std::string> Pod::take_text() {
    advance();
    auto text = take_front(texts_, now_ms_);
    if (!text) return std::nullopt;
    return std::move(text->text);
}

void Pod::command(std::string_view bytes, bool answers_status) {
    advance();
    scanner_.settle();
    for (const Statement& statement : read_command(bytes)) {
        if (statement.verb == Verb::Status && statement.refusal == Refusal::None) {
            texts_.clear();  // the reply to the status request comes first
            if (answers_status) push_text(settings_.ident);
        } else {
            apply(statement);
        }
    }
}

}  // namespace kavorix::sim
