// What the menu opens in a window that runs a site: another site, chosen, cancelled or one that cannot be loaded; the
// actions of an object.
#include "apps/brindle-map/open_site.h"

#include <QtTest/QTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <fstream>
#include <sstream>

#include "apps/brindle-map/action_chooser_dialog.h"
#include "apps/brindle-map/dialog_test_kit.h"
#include "apps/brindle-map/map_player.h"
#include "apps/brindle-map/map_window.h"
#include "host/written_site_test.h"

namespace brindle::map {
namespace {

using testing::Front;
using testing::Then;
using testing::ThenIn;
using testing::ThenWhen;

class OpenSite : public ::testing::Test {
  protected:
    OpenSite() {
        NeedDesktop();
        Write(m_first, "First", "400");
        Write(m_second, "Second", "200");
    }
    static void Write(const host::WrittenSite& site, const char* title, const char* width) {
        site.WriteObjects({"a"});
        site.WriteBehaviour("a", "<ButtonTrigger/>", "");
        site.Write("site.ini", "[Site]\nDevices=devices.ini\nMacros=macros.ini\nMap=map.xml\n[Object a]\n");
        site.Write("macros.ini", kMacros);
        WriteMap(site, title, width);
    }
    static void WriteMap(const host::WrittenSite& site, const std::string& title, const std::string& width) {
        site.Write("map.xml", "<map title='" + title + "' width='" + width + "' height='300'><label text='" +
                                  title + "' x='10' y='10' width='90' height='30'/></map>");
    }
    static MapWindow* Window() {
        for (QWidget* const widget : QApplication::topLevelWidgets())
            if (auto* const window = dynamic_cast<MapWindow*>(widget); window && window->isVisible())
                return window;
        return nullptr;
    }
    static bool Shows(const char* title) { return Window() && Window()->windowTitle() == title; }
    // Opens the box by its keys, as soon as the window is there; the step runs in it.
    static void InBox(std::function<void(QFileDialog&)> step) {
        ThenWhen(IsReady, [step] {
            ThenIn<QFileDialog>([step] { step(*Front<QFileDialog>()); });
            QTest::keyClick(Window(), Qt::Key_O, Qt::ControlModifier);
        });
    }
    // Shortcuts are the active window's.
    static bool IsReady() {
        MapWindow* const window = Window();
        if (!window || QApplication::activeModalWidget()) return false;
        window->activateWindow();
        return window->isActiveWindow();
    }
    static void Choose(QFileDialog& box, const std::string& file) {
        box.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(file));
        static_cast<QDialog&>(box).accept();
    }
    static void CloseWhen(std::function<bool()> condition) {
        ThenWhen(std::move(condition), [] { Window()->close(); });
    }
    void Play(std::uint64_t limit = 60'000) {
        auto map = std::make_unique<LoadedMap>(m_first.Folder());
        map->OpenEvents({}, true);
        map->MakeView();
        PlayInWindow(std::move(map), {1, limit});
        EXPECT_EQ(Window(), nullptr);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
    static std::string Text(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    static std::string Parent(const std::string& folder) {
        return folder.substr(0, folder.find_last_of('/'));
    }
    static constexpr const char* kMacros = "; ours\n[SearchPath]\n";

    host::WrittenSite m_first;
    host::WrittenSite m_second;
};

TEST_F(OpenSite, ShowsTheOtherInTheSameWindowAndKeepsTheDirectory) {
    MapWindow* window = nullptr;
    QSize size;
    InBox([&](QFileDialog& box) {
        window = Window();
        size = window->size();
        EXPECT_EQ(box.windowTitle(), "Open site");
        EXPECT_EQ(box.directory().path().toStdString(), Parent(m_first.Folder()));
        EXPECT_EQ(box.nameFilters(), (QStringList{"Sites (site.ini)", "All files (*)"}));
        testing::SavePicture(&box, "open_site.png");
        Choose(box, m_second.Path("site.ini"));
    });
    ThenWhen([] { return Shows("Second"); },
             [&] {
                 EXPECT_EQ(Window(), window);
                 EXPECT_EQ(window->size(), size);
                 EXPECT_EQ(window->View().Document().width, 200);
                 WriteMap(m_second, "Second", "250");
                 CloseWhen([window] { return window->View().Document().width == 250; });
             });
    Play();
    EXPECT_EQ(Text(m_first.Path("macros.ini")),
              kMacros + ("[Directories]\nLastSchematicDir=" + m_second.Folder() + "\n"));
    EXPECT_EQ(Text(m_second.Path("macros.ini")), kMacros);
}

TEST_F(OpenSite, CancellingKeepsNothing) {
    InBox([](QFileDialog& box) {
        box.reject();
        CloseWhen([] { return Shows("First"); });
    });
    Play();
    EXPECT_EQ(Text(m_first.Path("macros.ini")), kMacros);
}

TEST_F(OpenSite, BeginsInTheDirectoryUsedLast) {
    m_first.Write("macros.ini", "[Directories]\nLastSchematicDir=" + m_second.Folder() + "\n");
    InBox([&](QFileDialog& box) {
        EXPECT_EQ(box.directory().path().toStdString(), m_second.Folder());
        box.reject();
        CloseWhen([] { return true; });
    });
    Play();
}

TEST_F(OpenSite, OneThatCannotBeLoadedLeavesThePresentOneRunning) {
    struct Row {
        const char* label;
        const char* file;
        const char* text;
        const char* why;
    };
    const Row rows[] = {
        {"no map", "site.ini", "[Site]\n[Object a]\n", "names no \"Map\""},
        {"a broken behaviour list", "behaviours/a.xml", "<BehaviourList>", "a.xml:1:"},
        {"a broken map", "map.xml", "<map width='1'", "map.xml:1:"},
        {"no recording", "site.ini", "[Site]\nMap=map.xml\nRecording=nowhere.jsonl\n[Object a]\n",
         "nowhere.jsonl: cannot be opened"},
    };
    int width = 400;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Write(m_second, "Second", "200");
        m_second.Write(row.file, row.text);
        InBox([&](QFileDialog& box) {
            ThenIn<QMessageBox>([&] {
                const std::string text = Front<QMessageBox>()->text().toStdString();
                EXPECT_TRUE(text.starts_with("The site was not opened, and this one goes on.\n")) << text;
                EXPECT_NE(text.find(row.why), std::string::npos) << text;
                Front<QMessageBox>()->accept();
                ++width;
                WriteMap(m_first, "First", std::to_string(width));
                CloseWhen([&] { return Shows("First") && Window()->View().Document().width == width; });
            });
            Choose(box, m_second.Path("site.ini"));
        });
        Play();
    }
}

TEST_F(OpenSite, TheActionsOfTheObjectInFocusAreChosenAndSaved) {
    m_first.Write("map.xml",
                  "<map title='First' width='400' height='300'>"
                  "<button object='a' x='10' y='10' width='90' height='30'/></map>");
    ThenWhen(IsReady, [] {
        ThenWhen([] { return testing::FrontWindow() != nullptr; },
                 [] {
                     auto* const types = Numbered<QComboBox>(ActionChooserDialog::kType);
                     const int index = types->findText("Action: Write Log");
                     ASSERT_GE(index, 0);
                     types->setCurrentIndex(index);
                     emit types->activated(index);
                     Numbered<QPushButton>(ActionChooserDialog::kAdd)->click();
                     Button(QDialogButtonBox::Ok)->click();
                     CloseWhen([] { return !QApplication::activeModalWidget(); });
                 });
        QTest::keyClick(Window(), Qt::Key_Tab);
        QTest::keyClick(Window(), Qt::Key_E, Qt::ControlModifier);
    });
    Play();
    EXPECT_NE(Text(m_first.Path("behaviours/a.xml")).find("WriteLog"), std::string::npos)
        << Text(m_first.Path("behaviours/a.xml"));
}

TEST_F(OpenSite, TheEndOfTheTimeEndsTheBox) {
    bool opened = false;
    InBox([&](QFileDialog&) { opened = true; });
    Play(500);
    EXPECT_TRUE(opened);
}

}  // namespace
}  // namespace brindle::map
