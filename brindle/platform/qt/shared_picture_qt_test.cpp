// Pictures from real files to real pixels, and everything that moves in Qt's loop: the whole way a host goes.
#include <gtest/gtest.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QEventLoop>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <fstream>
#include <string>

#include "brindle/platform/clock.h"
#include "brindle/platform/images.h"
#include "brindle/platform/qt/painter_context.h"
#include "brindle/platform/qt/qt_services.h"
#include "brindle/platform/qt/qt_test_application.h"
#include "brindle/platform/screen.h"
#include "brindle/platform/ui_timer.h"
#include "brindle/widgets/animation_update_controller.h"
#include "brindle/widgets/animation_update_target.h"
#include "brindle/widgets/flash_timer.h"
#include "brindle/widgets/shared_picture.h"
#include "testing/animation_timer.h"
#include "testing/picture_bytes.h"

namespace {

constexpr int kLongest = 60'000;  // milliseconds for anything to happen

class SharedPictureQt : public ::testing::Test {
  protected:
    SharedPictureQt() {
        brindle::testing::NeedQtApplication();
        brindle::InstallQtServices();
    }
    ~SharedPictureQt() override {
        brindle::SetUiTimer(nullptr);
        brindle::SetImages(nullptr);
        brindle::SetScreen(nullptr);
    }
    static std::string File(const std::string& name, const std::string& bytes) {
        const std::string path = ::testing::TempDir() + name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
    // The colour in the middle of the whole picture drawn on black.
    static QRgb Middle(IPicture* picture) {
        QImage image(10, 10, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        brindle::PainterContext context(painter);
        long width = 0, height = 0;
        picture->get_Width(&width);
        picture->get_Height(&height);
        EXPECT_EQ(picture->Render(&context.DC(), 0, 0, 10, 10, 0, height, width, -height, nullptr),
                  kInterfaceOk);
        return image.pixel(5, 5);
    }
    template <class Done>
    static bool RunUntil(const Done& done) {
        const QDeadlineTimer deadline(kLongest);
        QObject waker;
        waker.startTimer(1000);  // looks at the deadline when nothing else happens
        while (!done() && !deadline.hasExpired())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return done();
    }
};

TEST_F(SharedPictureQt, AGifIsDrawnFrameByFrame) {
    const std::string path = File("moving.gif", brindle::testing::GifBytes(4, 4, {{1, 5}, {2, 0}, {3, 20}}));
    IPicture* picture = CreateSharedPicture(path.c_str());
    ASSERT_NE(picture, nullptr);
    void* facet = nullptr;
    ASSERT_EQ(picture->QueryInterface(kPictureAnimationId, &facet), kInterfaceOk);
    auto* const animation = static_cast<IPictureAnimation*>(facet);
    EXPECT_EQ(Middle(picture), 0xFFFF0000);
    std::uint32_t delay = 7;
    animation->Advance(0, delay);
    EXPECT_EQ(delay, 0u) << "as the file says";
    EXPECT_EQ(Middle(picture), 0xFF00FF00);
    animation->Advance(0, delay);
    EXPECT_EQ(delay, 200u);
    EXPECT_EQ(Middle(picture), 0xFFFFFFFF);
    animation->Advance(0, delay);
    EXPECT_EQ(delay, 50u);
    EXPECT_EQ(Middle(picture), 0xFFFF0000);
    ReleaseSharedPicture(picture);
}

TEST_F(SharedPictureQt, ABitmapShowsAPictureOnItsColour) {
    const std::string path = File("half.png", brindle::testing::PngBytes(2, 1, {0x00FFFFFF, 0xFF0000FF}));
    CBitmap* bitmap = CreateSharedBitmap(path.c_str(), 0x0000FF);
    ASSERT_NE(bitmap, nullptr);
    QImage image(4, 2, QImage::Format_RGB32);
    image.fill(Qt::black);
    {
        QPainter painter(&image);
        brindle::PainterContext context(painter);
        EXPECT_TRUE(context.DC().DrawBitmap({1, 1, 3, 2}, *bitmap));
    }
    EXPECT_EQ(image.pixel(0, 1), 0xFF000000);
    EXPECT_EQ(image.pixel(1, 1), 0xFFFF0000) << "the ground";
    EXPECT_EQ(image.pixel(2, 1), 0xFF0000FF) << "the picture";
    EXPECT_EQ(image.pixel(3, 1), 0xFF000000);
    ReleaseSharedBitmap(bitmap);
}

TEST_F(SharedPictureQt, DamagedFilesAreNoPictures) {
    const std::string gif = brindle::testing::GifBytes(4, 4, {{1, 5}});
    for (const std::string& path :
         {File("cut.gif", gif.substr(0, 40)), File("text.png", "no picture"), File("none.bmp", "")}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(CreateSharedPicture(path.c_str()), nullptr);
        EXPECT_EQ(CreateSharedBitmap(path.c_str(), 0), nullptr);
    }
}

class Moving final : public CAnimationUpdateTarget {
  public:
    explicit Moving(IPictureAnimation& animation) : m_animation(animation) {}
    void DoUpdate(unsigned int now, std::uint64_t& nextDue) override {
        std::uint32_t delay = 0;
        m_animation.Advance(now, delay);
        ++steps;
        if (steps < 4) nextDue = brindle::SystemMilliseconds() + delay;
    }
    int steps = 0;

  private:
    IPictureAnimation& m_animation;
};

TEST_F(SharedPictureQt, APictureMovesInTheLoop) {
    const std::string path = File("loop.gif", brindle::testing::GifBytes(2, 2, {{1, 1}, {2, 2}, {3, 1}}));
    IPicture* picture = CreateSharedPicture(path.c_str());
    ASSERT_NE(picture, nullptr);
    void* facet = nullptr;
    picture->QueryInterface(kPictureAnimationId, &facet);
    {
        Moving moving(*static_cast<IPictureAnimation*>(facet));
        brindle::testing::AnimationTimer timer;
        CAnimationUpdateController::GetInstance().Register(&moving);
        timer.Arm();
        EXPECT_TRUE(RunUntil([&] { return moving.steps == 4; }));
        unsigned int wait = 0;
        EXPECT_FALSE(CAnimationUpdateController::GetInstance().NeedsUpdate(wait));
    }
    EXPECT_EQ(Middle(picture), 0xFF00FF00) << "four steps through three frames";
    ReleaseSharedPicture(picture);
}

class Lamp final : public CFlashCallBack {
  public:
    void OnFlash(int state) override {
        states += std::to_string(state);
        if (states.size() == 2) EndFlashTimer(this);
    }
    std::string states;
};

TEST_F(SharedPictureQt, LampsFlashInTheLoop) {
    Lamp lamp;
    const std::uint64_t begin = brindle::CurrentClock().MonotonicMilliseconds();
    ASSERT_EQ(StartFlashTimer(&lamp), 1);
    EXPECT_TRUE(RunUntil([&] { return lamp.states.size() == 2; }));
    EXPECT_GE(brindle::CurrentClock().MonotonicMilliseconds() - begin, 1000u);
    EXPECT_TRUE(lamp.states == "10" || lamp.states == "01") << lamp.states;
    EXPECT_EQ(EndFlashTimer(&lamp), 0) << "it ended itself";
}

}  // namespace
