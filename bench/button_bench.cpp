// 1,000 glossy buttons of 100 by 40 with captions into an image of 1920 by 1080: through the widgets, beside as many of
// Qt's own push buttons in the Fusion style, and beside the same recipe written with the painter.
//
// Buttons are the state after the first frame: bodies and captions that look alike are copied. FirstFrame is the frame
// before it, when nothing has been drawn yet. Unlike is its worst case: no two buttons look alike.
#include <benchmark/benchmark.h>

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyleFactory>
#include <memory>
#include <string>
#include <vector>

#include "brindle/platform/qt/painter_bodies.h"
#include "brindle/platform/qt/painter_captions.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/qt_services.h"
#include "brindle/widgets/button.h"

namespace {

constexpr int kButtons = 1000, kWidth = 100, kHeight = 40;

QRect Place(int i) {
    constexpr int kColumns = 40, kAcross = 45, kDown = 41;
    return {10 + i % kColumns * kAcross, 10 + i / kColumns * kDown, kWidth, kHeight};
}

std::string Caption(int i) {
    return "Button " + std::to_string(i);
}

// Blue, or 1,000 colours about it.
QColor Colour(int i, bool alike) {
    return alike ? QColor(0x3C, 0x6E, 0xB4) : QColor(0x3C + i % 10, 0x6E + i / 10 % 10, 0xB4 + i / 100);
}

void NeedApplication() {
    if (QCoreApplication::instance()) return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static char name[] = "bench";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    new QApplication(count, arguments);  // as long as the process
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    brindle::InstallQtServices();
}

QImage Screen() {
    NeedApplication();
    QImage image(1920, 1080, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

std::vector<OV::Button> Buttons(bool alike) {
    std::vector<OV::Button> buttons(kButtons);
    for (int i = 0; i < kButtons; ++i) {
        OV::Button& button = buttons[static_cast<std::size_t>(i)];
        const QRect place = Place(i);
        const QColor colour = Colour(i, alike);
        button.SetBounds({place.left(), place.top(), place.left() + kWidth, place.top() + kHeight});
        button.SetText(CStringA(Caption(i)));
        button.SetColor(static_cast<unsigned long>(colour.red() | colour.green() << 8 | colour.blue() << 16));
    }
    return buttons;
}

void Draw(QImage& image, std::vector<OV::Button>& buttons) {
    QPainter painter(&image);
    brindle::PainterContext context(painter);
    for (OV::Button& button : buttons) button.Draw(&context.DC(), 1);
}

void DrawButtons(benchmark::State& state) {
    QImage image = Screen();
    std::vector<OV::Button> buttons = Buttons(true);
    Draw(image, buttons);
    for (auto _ : state) Draw(image, buttons);
}
BENCHMARK(DrawButtons)->Name("ThousandButtons")->Unit(benchmark::kMillisecond);

void DrawFirstFrame(benchmark::State& state, bool alike) {
    QImage image = Screen();
    std::vector<OV::Button> buttons = Buttons(alike);
    for (auto _ : state) {
        state.PauseTiming();
        brindle::PainterBodies::Instance().Clear();
        brindle::PainterCaptions::Instance().Clear();
        state.ResumeTiming();
        Draw(image, buttons);
    }
}
BENCHMARK_CAPTURE(DrawFirstFrame, Alike, true)
    ->Name("ThousandButtonsFirstFrame")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(DrawFirstFrame, Unlike, false)
    ->Name("ThousandUnlikeButtonsFirstFrame")
    ->Unit(benchmark::kMillisecond);

void DrawFusion(benchmark::State& state) {
    QImage image = Screen();
    std::vector<std::unique_ptr<QPushButton>> buttons;
    for (int i = 0; i < kButtons; ++i) {
        buttons.push_back(std::make_unique<QPushButton>(QString::fromStdString(Caption(i))));
        buttons.back()->setFont(QFont("Arial", 10));
        buttons.back()->resize(kWidth, kHeight);
    }
    for (auto _ : state) {
        QPainter painter(&image);
        for (int i = 0; i < kButtons; ++i)
            buttons[static_cast<std::size_t>(i)]->render(&painter, Place(i).topLeft(), QRegion(),
                                                         QWidget::DrawChildren);
    }
}
BENCHMARK(DrawFusion)->Name("ThousandFusionButtons")->Unit(benchmark::kMillisecond);

QPainterPath Rounded(const QRectF& frame, double radius) {
    QPainterPath path;
    path.addRoundedRect(frame, radius, radius);
    return path;
}

void DrawByHand(QPainter& painter, const QRect& place, const QColor& colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(0.5, 0.5);
    const QRectF frame(place.left(), place.top(), kWidth - 1, kHeight - 1);
    const QRectF upper(frame.x(), frame.y(), frame.width(), frame.height() / 2);
    const QPainterPath path = Rounded(frame, 2);
    painter.fillPath(path, colour);
    QLinearGradient gloss(upper.topLeft(), upper.bottomLeft());
    gloss.setColorAt(0, QColor(255, 255, 255, 200));
    gloss.setColorAt(1, QColor(255, 255, 255, 66));
    painter.setClipPath(path);
    painter.setClipPath(Rounded(upper, 2), Qt::IntersectClip);
    painter.fillRect(upper, gloss);
    painter.setClipping(false);
    painter.strokePath(path, QPen(QColor(0x50, 0x50, 0x50), 2));
    painter.restore();
}

void DrawPlainRecipe(benchmark::State& state) {
    QImage image = Screen();
    const QFont font("Arial", 10);
    std::vector<QString> captions;
    for (int i = 0; i < kButtons; ++i) captions.push_back(QString::fromStdString(Caption(i)));
    for (auto _ : state) {
        QPainter painter(&image);
        painter.setFont(font);
        for (int i = 0; i < kButtons; ++i) {
            DrawByHand(painter, Place(i), Colour(i, false));
            painter.drawText(Place(i), Qt::AlignCenter | Qt::TextWordWrap,
                             captions[static_cast<std::size_t>(i)]);
        }
    }
}
BENCHMARK(DrawPlainRecipe)->Name("ThousandPlainRecipes")->Unit(benchmark::kMillisecond);

}  // namespace
