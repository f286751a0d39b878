// Recordings line by line with bounded memory. Tests: event_line_test.cpp.
#include "host/event_reader.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace brindle::host {

EventReader::Line EventReader::ReadLine() {
    using Traits = std::istream::traits_type;
    m_line.clear();
    bool any = false;
    bool tooLong = false;
    for (;;) {
        const auto c = m_input.rdbuf()->sbumpc();
        if (Traits::eq_int_type(c, Traits::eof())) break;
        any = true;
        if (Traits::to_char_type(c) == '\n') break;
        tooLong = tooLong || m_line.size() == kLongestLine;
        if (!tooLong) m_line += Traits::to_char_type(c);
    }
    if (!any) return Line::kEnd;
    ++m_number;
    return tooLong ? Line::kTooLong : Line::kGood;
}

std::optional<EventItem> EventReader::Next(std::chrono::milliseconds) {
    EventItem item;
    const auto problem = [&](std::string why) {
        item.what = EventItem::kProblem;
        item.problem = {m_name, m_number, 0, std::move(why)};
        return item;
    };
    for (;;) {
        const Line status = ReadLine();
        if (status == Line::kEnd) return item;
        if (status == Line::kTooLong)
            return problem("is longer than " + std::to_string(kLongestLine) + " bytes");
        std::string_view text = m_line;
        if (m_number == 1 && text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
        if (text.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        std::string why = ParseEventLine(text, item.event);
        if (!why.empty()) return problem(std::move(why));
        item.what = EventItem::kEvent;
        item.name = m_name;
        item.line = m_number;
        return item;
    }
}

// What the reading thread and the run share. Both keep it alive.
struct BackgroundReader::Shared {
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<EventItem> items;
    bool abandoned = false;
    std::function<void()> wake;

    // False when the run is over.
    bool Put(EventItem item) {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return abandoned || items.size() < kAhead; });
        if (abandoned) return false;
        items.push_back(std::move(item));
        changed.notify_all();
        if (wake) wake();
        return true;
    }
};

BackgroundReader::BackgroundReader(std::istream& input, std::string name)
    : m_shared(std::make_shared<Shared>()) {
    std::thread([shared = m_shared, &input, name = std::move(name)]() mutable {
        EventReader reader(input, std::move(name));
        for (;;) {
            std::optional<EventItem> item = reader.Next({});
            const bool last = !item || item->what == EventItem::kEnd;
            if (!shared->Put(std::move(item).value_or(EventItem())) || last) return;
        }
    }).detach();
}

BackgroundReader::~BackgroundReader() {
    const std::lock_guard lock(m_shared->mutex);
    m_shared->abandoned = true;
    m_shared->changed.notify_all();
}

void BackgroundReader::SetWake(std::function<void()> wake) {
    const std::lock_guard lock(m_shared->mutex);
    m_shared->wake = std::move(wake);
}

std::optional<EventItem> BackgroundReader::Next(std::chrono::milliseconds longest) {
    std::unique_lock lock(m_shared->mutex);
    if (!m_shared->changed.wait_for(lock, longest, [this] { return !m_shared->items.empty(); })) return {};
    EventItem item = m_shared->items.front();
    if (item.what != EventItem::kEnd) m_shared->items.pop_front();
    m_shared->changed.notify_all();
    return item;
}

std::optional<EventItem> NoEvents::Next(std::chrono::milliseconds longest) {
    std::this_thread::sleep_for(longest);
    return {};
}

}  // namespace brindle::host
