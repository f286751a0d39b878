// Ends of a desktop host in the wrong order: pictures, animation targets, blinking, timers, windows and widgets that
// outlive the application object, and a process that ends inside one of Qt's loops. Without a desktop:
// tests/shutdown_test.cpp.
#include <QtCore/QDeadlineTimer>
#include <QtCore/QTimer>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLineEdit>
#include <fstream>
#include <memory>
#include <string>

#include "brindle/dialogs/select_colour.h"
#include "brindle/dialogs/themed_dlg.h"
#include "brindle/platform/colour_box.h"
#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/qt_services.h"
#include "brindle/platform/screen.h"
#include "brindle/util/run_loop.h"
#include "brindle/util/timer.h"
#include "brindle/widgets/animation_update_controller.h"
#include "brindle/widgets/animation_update_target.h"
#include "brindle/widgets/button.h"
#include "brindle/widgets/flash_timer.h"
#include "brindle/widgets/shared_picture.h"
#include "testing/own_process.h"
#include "testing/picture_bytes.h"

namespace brindle {
namespace {

using testing::AtEnd;
using testing::Require;

constexpr unsigned kTemplate = 17, kName = 4;

// What Qt finds wrong is wrong: a timer of a loop that is gone, a widget without an application.
void RequireNoWarning(QtMsgType type, const QMessageLogContext&, const QString& text) {
    const bool ofTheScreen = text.startsWith("This plugin does not support");
    if (type == QtDebugMsg || type == QtInfoMsg || ofTheScreen) return;
    std::fprintf(stderr, "Qt: %s\n", qPrintable(text));
    Require(false);
}

std::unique_ptr<QApplication> MakeApplication() {
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(::testing::TempDir()));
    qInstallMessageHandler(nullptr);  // at its start it finds fault with bare machines
    auto application = std::make_unique<QApplication>(count, arguments);
    qInstallMessageHandler(&RequireNoWarning);
    InstallQtServices();
    return application;
}

void RunUntil(const bool& done) {
    const QDeadlineTimer deadline(60'000);
    while (!done && !deadline.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    Require(done);
}

std::string PictureFile() {
    std::string path = ::testing::TempDir() + "shutdown.gif";
    std::ofstream(path, std::ios::binary) << testing::GifBytes(36, 36, {{1, 1}, {3, 2}});  // red, white
    return path;
}

// How red a widget is drawn in its middle.
int DrawnRed(OV::Widget& widget) {
    QImage image(60, 60, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    PainterContext context(painter);
    widget.Draw(&context.DC(), 1);
    return qRed(image.pixel(30, 30));
}

void PicturesAndWidgetsAfterTheApplication() {
    static const std::string path = PictureFile();
    static IPicture* picture = nullptr;
    static OV::Button captioned("caption");
    static OV::Button button;
    static const AtEnd last([] {
        unsigned int delay = 0;
        button.UpdateAnimation(OV::Button::ImageNormal, 0, delay);
        Require(delay == 10);
        Require(CreateSharedPicture(path.c_str()) == picture);
        ReleaseSharedPicture(picture);
        ReleaseSharedPicture(picture);
    });
    std::unique_ptr<QApplication> application = MakeApplication();
    for (OV::Button* const each : {&button, &captioned}) {
        each->SetBounds({0, 0, 60, 60});
        Require(each->SetImage(CStringA(path), OV::Button::ImageNormal));
        DrawnRed(*each);
    }
    Require(DrawnRed(button) > 200);
    picture = CreateSharedPicture(path.c_str());
    Require(picture);

    application.reset();
    Require(DrawnRed(button) > 200);
    DrawnRed(captioned);
    unsigned int delay = 0;
    button.UpdateAnimation(OV::Button::ImageNormal, 0, delay);
    Require(delay == 20);
    Require(DrawnRed(button) > 200);
    CBitmap* const decoded = CreateSharedBitmap(path.c_str(), 0);
    Require(decoded);
    ReleaseSharedBitmap(decoded);
    Require(CurrentScreen().DotsPerInchX() == 96);
}

// Ticks that are counted.
class Ticker final : public CTimer {
  public:
    void Start() { CreateTimer(1, 1); }
    bool ticked = false;

  protected:
    void OnTimer(std::uint64_t) override { ticked = true; }
};

void ATimerAfterTheApplication() {
    static Ticker early;
    static const AtEnd plain([] {
        early.ticked = false;
        RunLoop loop;
        while (!early.ticked) loop.RunOnce(60'000);
    });
    const std::unique_ptr<QApplication> application = MakeApplication();
    static Ticker late;
    early.Start();
    late.Start();
    RunUntil(early.ticked);
}

void ATimerThatIsNeverStopped() {
    static Ticker& lost = *new Ticker;
    const std::unique_ptr<QApplication> application = MakeApplication();
    lost.Start();
    RunUntil(lost.ticked);
}

void ATimerFromOneApplicationToTheNext() {
    static Ticker ticker;
    std::unique_ptr<QApplication> application = MakeApplication();
    ticker.Start();
    RunUntil(ticker.ticked);
    application.reset();
    ticker.ticked = false;
    application = MakeApplication();
    RunUntil(ticker.ticked);
}

class Blinking final : public CFlashCallBack {
  public:
    void OnFlash(int) override { flashed = true; }
    bool flashed = false;
};

void BlinkingAfterTheApplication() {
    static Blinking never;
    static Blinking taken;
    static const AtEnd last([] { Require(EndFlashTimer(&taken) == 1 && EndFlashTimer(&taken) == 0); });
    const std::unique_ptr<QApplication> application = MakeApplication();
    Require(StartFlashTimer(&never) == 1 && StartFlashTimer(&taken) == 1);
    RunUntil(never.flashed);
}

void AnimationTargetsAfterTheApplication() {
    struct Target final : CAnimationUpdateTarget {
        void DoUpdate(unsigned int, std::uint64_t& nextDue) override {
            nextDue = 1;
            updated = true;
        }
        bool updated = false;
    };
    static Target target;
    static const AtEnd last([] {
        target.updated = false;
        CAnimationUpdateController::GetInstance().DoUpdate();
        Require(target.updated);
    });
    const std::unique_ptr<QApplication> application = MakeApplication();
    CAnimationUpdateController::GetInstance().Register(&target);
    QTimer::singleShot(0, application.get(), [] { CAnimationUpdateController::GetInstance().DoUpdate(); });
    RunUntil(target.updated);
}

class NameDialog final : public CThemedDlg {
  public:
    NameDialog() : CThemedDlg(kTemplate, nullptr) {}
    bool told = false;

  protected:
    void OnDestroy() override {
        told = true;
        CThemedDlg::OnDestroy();
    }
};

void FillNameDialog(QWidget& window) {
    auto* const form = new QFormLayout(&window);
    auto* const name = new QLineEdit("name");
    SetControlId(*name, kName);
    form->addRow(name);
}

void WindowsAfterTheApplication() {
    static NameDialog shown, owned;
    static const AtEnd last([] {
        Require(shown.told && owned.told);  // their windows went with the application
        Require(!shown.GetSafeHwnd() && shown.GetDlgItemTextA(kName).IsEmpty());
        Require(!shown.Create(kTemplate) && owned.DoModal() == -1);
        unsigned long colour = 1;
        Require(SelectColour(nullptr, colour) == 0 && colour == 1);
    });
    const std::unique_ptr<QApplication> application = MakeApplication();
    RegisterDialogTemplate(kTemplate, &FillNameDialog);
    Require(shown.Create(kTemplate) && owned.Create(kTemplate, &shown));
    shown.ShowWindow();
    owned.ShowWindow();
    Require(shown.GetDlgItemTextA(kName) == "name");
    QCoreApplication::processEvents();
}

void AWindowWhoseEndMakesAnotherEnd() {
    static NameDialog second;
    struct First final : CDialog {
        First() : CDialog(kTemplate) {}
        void OnDestroy() override { second.DestroyWindow(); }
    };
    static First first;
    const std::unique_ptr<QApplication> application = MakeApplication();
    RegisterDialogTemplate(kTemplate, &FillNameDialog);
    Require(first.Create(kTemplate) && second.Create(kTemplate));
}

void AModalDialogThatEndsTheProcess() {
    NameDialog dialog;
    const std::unique_ptr<QApplication> application = MakeApplication();
    RegisterDialogTemplate(kTemplate, &FillNameDialog);
    QTimer::singleShot(0, application.get(), [] { std::exit(0); });
    dialog.DoModal();
    Require(false);
}

void AColourDialogThatEndsTheProcess() {
    const std::unique_ptr<QApplication> application = MakeApplication();
    QTimer::singleShot(0, application.get(), [] { std::exit(0); });
    std::uint32_t colour = 0;
    CustomColours custom{};
    CurrentColourBox().ChooseColour(nullptr, colour, custom);
    Require(false);
}

void ATickThatEndsTheProcess() {
    struct Ender final : CTimer {
        void Start() { CreateTimer(1, 1); }
        void OnTimer(std::uint64_t) override { std::exit(0); }
    };
    static Ender ender;
    const std::unique_ptr<QApplication> application = MakeApplication();
    ender.Start();
    QCoreApplication::exec();
    Require(false);
}

TEST(ShutdownQt, InAnyOrder) {
    testing::ExpectGoodEnds({
        {"pictures and widgets after the application", PicturesAndWidgetsAfterTheApplication},
        {"a timer after the application", ATimerAfterTheApplication},
        {"a timer that is never stopped", ATimerThatIsNeverStopped},
        {"a timer from one application to the next", ATimerFromOneApplicationToTheNext},
        {"blinking after the application", BlinkingAfterTheApplication},
        {"animation targets after the application", AnimationTargetsAfterTheApplication},
        {"windows after the application", WindowsAfterTheApplication},
        {"a window whose end makes another end", AWindowWhoseEndMakesAnotherEnd},
        {"a modal dialog that ends the process", AModalDialogThatEndsTheProcess},
        {"a colour dialog that ends the process", AColourDialogThatEndsTheProcess},
        {"a tick that ends the process", ATickThatEndsTheProcess},
    });
}

}  // namespace
}  // namespace brindle
