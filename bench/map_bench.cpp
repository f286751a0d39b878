// A map of 300 widgets on 1920 x 1080 pixels: what a change of ten costs, from the reports to the pixels, beside
// drawing the whole map.
#include <benchmark/benchmark.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <string>

#include "brindle/address/events.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/qt_test_application.h"
#include "host/host_files.h"
#include "host/map_view.h"

namespace brindle::host {
namespace {

constexpr int kWidgets = 300;
constexpr int kChanging = 10;

std::string AddressOf(int device) {
    const char* digits = "0123456789ABCDEF";
    return std::string("0001:0") + digits[device / 256] + ":" + digits[device / 16 % 16] +
           digits[device % 16];
}

class LargeMap {
  public:
    LargeMap() : m_image(1920, 1080, QImage::Format_RGB32) {
        testing::NeedQtApplication();
        std::string map = "<map width='1920' height='1080'>";
        for (int i = 0; i < kWidgets; ++i) {
            m_site.devices.Subscribe(CAddressOv(AddressOf(i).c_str()).GetDWord());
            map += "<button event='none' x='" + std::to_string(i % 20 * 96) + "' y='" +
                   std::to_string(i / 20 * 72) + "' width='88' height='60' text='Device %i' device='" +
                   AddressOf(i) + "'/>";
        }
        MapDocument document;
        Problems problems;
        ReadMapText(map + "</map>", "map", document, problems);
        m_view.emplace(m_site, document, nullptr);
        m_view->Refresh();
        m_view->TakeDirty();
    }
    void Report(int device, int state) {
        const std::string address = AddressOf(device);
        m_view->Take({{"kind", "event"}, {"event", "state"}, {"address", address}, {"state", state}});
        EventLine line;
        line.state = state;
        line.address = CAddressOv(address.c_str());
        const CStateEvent* event = MakeEvent(line, CAddressOv());
        m_site.devices.Take(*event);
        event->Release();
    }
    void DrawChanges() {
        m_view->Refresh();
        QPainter painter(&m_image);
        PainterContext context(painter);
        for (const CRect& place : m_view->TakeDirty()) m_view->Draw(context.DC(), place);
    }
    void DrawWhole() {
        QPainter painter(&m_image);
        PainterContext context(painter);
        m_view->Draw(context.DC(), {0, 0, 1920, 1080});
    }

  private:
    Site m_site;
    QImage m_image;
    std::optional<MapView> m_view;
};

void MapTenOfThreeHundred(benchmark::State& state) {
    LargeMap map;
    map.DrawWhole();
    int now = 0;
    for (auto _ : state) {
        now = now == 1 ? 0 : 1;
        for (int i = 0; i < kChanging; ++i) map.Report(i * 29, now);
        map.DrawChanges();
    }
}
BENCHMARK(MapTenOfThreeHundred);

void MapWhole(benchmark::State& state) {
    LargeMap map;
    for (auto _ : state) map.DrawWhole();
}
BENCHMARK(MapWhole);

}  // namespace
}  // namespace brindle::host
