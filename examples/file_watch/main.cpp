// Prints when a file is written. The monitor calls on a thread of its own; the host takes the news over to its own.
// usage: file_watch FILE [TIMES]
#include <brindle/brindle.h>

#include <atomic>
#include <cstdlib>
#include <iostream>

struct Watcher final : FileMonitor::Handler {
    brindle::RunLoop loop;
    std::atomic<bool> changed{false};

    void OnFileChanged(const CStringA&) override { Tell(); }
    void OnChangesLost(const CStringA&) override { Tell(); }       // look at the file to be sure
    void OnChangePassedOver(const CStringA&) override { Tell(); }  // it came within 100 ms of the last one
    void Tell() {
        changed = true;
        loop.Wake();
    }
};

int main(int count, char** arguments) {
    if (count < 2) return std::cerr << "usage: file_watch FILE [TIMES]\n", 2;
    const CStringA path = arguments[1];
    Watcher watcher;
    FileMonitor monitor(FileMonitor::AlsoCounts::kReplacement);  // made last: goes first, before the handler
    if (!monitor.StartMonitoringFile(path, &watcher))
        return std::cerr << "file_watch: " << arguments[1] << ": its folder cannot be watched\n", 1;
    std::cout << "watching" << std::endl;
    for (int left = count > 2 ? std::atoi(arguments[2]) : 1; left > 0;) {
        watcher.loop.RunOnce(1000);
        if (!watcher.changed.exchange(false)) continue;
        std::string text;
        const brindle::Result read = brindle::ReadHostFile(path.view(), 1'000'000, text);
        std::cout << (read.ok() ? "now: " + text : "gone") << std::endl;
        --left;
    }
}
