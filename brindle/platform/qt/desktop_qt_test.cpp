// The contract of desktops over Qt's boxes, and what each request becomes in a real one.
#include "brindle/platform/qt/desktop_qt.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include "brindle/library/string_table.h"
#include "brindle/macro/file_box.h"
#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/file_filters.h"
#include "brindle/platform/qt/widget_test_application.h"
#include "brindle/platform/service.h"
#include "testing/desktop_contract.h"

namespace brindle {
namespace {

using testing::Front;
using testing::NeedWidgetApplication;
using testing::Then;

QString Folder() {
    return QDir::cleanPath(QString::fromStdString(::testing::TempDir()));
}

std::string WrittenFile(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    return path.toStdString();
}

void Choose(const QString& path) {
    auto* const dialog = Front<QFileDialog>();
    dialog->setDirectory(QFileInfo(path).absolutePath());
    dialog->selectFile(path);
    static_cast<QDialog*>(dialog)->accept();
}

void Dismiss() {
    Front<QMessageBox>()->button(QMessageBox::Ok)->click();
}

class QtRig final : public testing::DesktopRig {
  public:
    QtRig() { NeedWidgetApplication(); }
    Desktop& Service() override { return QtDesktop(); }
    void WillConfirmMessage() override { Then(&Dismiss); }
    std::string WillChoose() override {
        const QString path = Folder() + "/chosen.txt";
        Then([path] { Choose(path); });
        return WrittenFile(path);
    }
    void WillCancel() override {
        Then([] { Front<QFileDialog>()->reject(); });
    }
};

std::unique_ptr<testing::DesktopRig> MakeQtRig() {
    return std::make_unique<QtRig>();
}

class QtDesktopTest : public ::testing::Test {
  protected:
    QtDesktopTest() { NeedWidgetApplication(); }
    ScopedService<Desktop> m_installed{&SetDesktop, QtDesktop()};
};

TEST_F(QtDesktopTest, MessagesHaveTheirIconOwnerAndPlainText) {
    QWidget owner;
    QWidget child(&owner);
    QGuiApplication::setApplicationDisplayName("Station");
    for (const auto& [icon, expected] : {std::pair(MessageIcon::kWarning, QMessageBox::Warning),
                                         {MessageIcon::kError, QMessageBox::Critical}}) {
        Then([&, want = expected] {
            const auto* const box = Front<QMessageBox>();
            EXPECT_EQ(box->icon(), want);
            EXPECT_EQ(box->parentWidget(), &owner) << "the window of what was named";
            EXPECT_EQ(box->text(), QString::fromUtf8("<b>Caf\xC3\xA9</b>"));
            EXPECT_EQ(box->textFormat(), Qt::PlainText);
            EXPECT_EQ(box->standardButtons(), QMessageBox::Ok);
            EXPECT_TRUE(box->isModal());
            Dismiss();
        });
        QtDesktop().ShowMessage(HandleOf(&child), icon, "<b>Caf\xE9</b>");
    }
    QGuiApplication::setApplicationDisplayName({});
}

TEST_F(QtDesktopTest, AMessageEndsByKeysAndWithItsOwner) {
    Then([] { testing::PressKey(Front<QMessageBox>(), Qt::Key_Escape); });
    QtDesktop().ShowMessage(nullptr, MessageIcon::kError, "a");
    auto owner = std::make_unique<QWidget>();
    Then([&] { owner.reset(); });
    QtDesktop().ShowMessage(HandleOf(owner.get()), MessageIcon::kError, "a");
    Then(&Dismiss);
    QtDesktop().ShowMessage(reinterpret_cast<HWND>(&owner), MessageIcon::kError,
                            "an owner that is no window");
}

TEST_F(QtDesktopTest, LongMessagesFitOnTheScreen) {
    for (const std::string& text : {std::string(100'000, 'x'), std::string(5'000, '\n')}) {
        Then([&] {
            auto* const box = Front<QMessageBox>();
            EXPECT_LE(box->text().size(), 4001);
            EXPECT_LE(box->text().count('\n'), 25);
            EXPECT_EQ(box->detailedText().size(), static_cast<qsizetype>(text.size()))
                << "the whole is at hand";
            Dismiss();
        });
        QtDesktop().ShowMessage(nullptr, MessageIcon::kWarning, text);
    }
}

TEST_F(QtDesktopTest, FiltersBecomeQts) {
    struct Row {
        const char* label;
        std::string pairs;
        QStringList expected;
    };
    const std::string z(1, '\0');
    const std::vector<Row> rows = {
        {"none", "", {}},
        {"one", "Text" + z + "*.txt" + z + z, {"Text (*.txt)"}},
        {"several patterns", "Text" + z + "*.txt;*.log" + z + z, {"Text (*.txt *.log)"}},
        {"named already", "Text (*.txt)" + z + "*.txt" + z + z, {"Text (*.txt)"}},
        {"named otherwise", "Text (old)" + z + "*.txt" + z + z, {"Text (old) (*.txt)"}},
        {"every file", "All (*.*)" + z + "*.*" + z + z, {"All (*)"}},
        {"a pattern without its dot is kept", "Pif" + z + "*pif" + z + z, {"Pif (*pif)"}},
        {"a last text alone", "Text" + z + "*.txt" + z + "Cut", {"Text (*.txt)"}},
        {"no zeros at the end", "Text" + z + "*.txt", {"Text (*.txt)"}},
        {"up to an empty text", "A" + z + "*.a" + z + z + "B" + z + "*.b" + z, {"A (*.a)"}},
        {"blanks around patterns", "A" + z + " *.a ; *.b ;" + z, {"A (*.a *.b)"}},
        {"letters of the code page", "Caf\xE9" + z + "*.\xE9" + z, {QString::fromLatin1("Caf\xE9 (*.\xE9)")}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(NameFilters(row.pairs), row.expected) << NameFilters(row.pairs).join('|').toStdString();
    }
}

TEST_F(QtDesktopTest, AnOpenBoxShowsWhatWasAskedFor) {
    QWidget owner;
    const QString folder = Folder() + "/Initial";
    ASSERT_TRUE(QDir().mkpath(folder));
    CStringA file = "old.txt";
    Then([&] {
        auto* const dialog = Front<QFileDialog>();
        EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptOpen);
        EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
        EXPECT_EQ(dialog->parentWidget(), &owner);
        EXPECT_EQ(dialog->windowTitle(), "Browse for File");
        EXPECT_EQ(dialog->directory().absolutePath(), folder);
        EXPECT_EQ(dialog->nameFilters().size(), 6);
        EXPECT_EQ(dialog->nameFilters().at(4), "Program Information files (*.pif) (*pif)");
        EXPECT_EQ(dialog->findChild<QLineEdit*>("fileNameEdit")->text(), "old.txt");
        testing::SavePicture(dialog, "open_box.png");
        dialog->reject();
    });
    // The folder as the other system writes it.
    const std::string windows = "C:" + QString(folder).replace('/', '\\').toStdString();
    EXPECT_EQ(SelectFileBox(HandleOf(&owner), file, LoadStringResource(kTextExecutableFilter),
                            windows.c_str(), 0x1000, LoadStringResource(kTextBrowseForFile)),
              0);
    EXPECT_EQ(file, "old.txt");
}

TEST_F(QtDesktopTest, FlagsSayWhatMustExistAndWhatIsAskedFirst) {
    struct Row {
        const char* label;
        bool save;
        unsigned long flags;
        QFileDialog::FileMode mode;
        bool silent;
    };
    const std::vector<Row> rows = {
        {"open", false, 0, QFileDialog::AnyFile, true},
        {"open what exists", false, 0x1000, QFileDialog::ExistingFile, true},
        {"save", true, 0, QFileDialog::AnyFile, true},
        {"save and ask", true, 0x2, QFileDialog::AnyFile, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Then([&] {
            auto* const dialog = Front<QFileDialog>();
            EXPECT_EQ(dialog->acceptMode(), row.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
            EXPECT_EQ(dialog->fileMode(), row.mode);
            EXPECT_EQ(dialog->testOption(QFileDialog::DontConfirmOverwrite), row.silent);
            dialog->reject();
        });
        FileBoxRequest request;
        request.save = row.save;
        request.flags = row.flags;
        std::string file;
        EXPECT_FALSE(QtDesktop().ChooseFile(request, file));
    }
}

TEST_F(QtDesktopTest, AWholePathBeginsInItsFolder) {
    const QString folder = Folder() + "/Whole";
    ASSERT_TRUE(QDir().mkpath(folder));
    Then([&] {
        auto* const dialog = Front<QFileDialog>();
        EXPECT_EQ(dialog->directory().absolutePath(), folder);
        EXPECT_EQ(dialog->findChild<QLineEdit*>("fileNameEdit")->text(), "new.txt");
        static_cast<QDialog*>(dialog)->accept();
    });
    CStringA file = (folder + "/new.txt").toStdString();
    EXPECT_NE(SaveFileBox(nullptr, file, "", nullptr, 0, nullptr), 0);
    EXPECT_EQ(file, (folder + "/new.txt").toStdString());
    EXPECT_FALSE(QFile::exists(folder + "/new.txt")) << "choosing writes nothing";
}

TEST_F(QtDesktopTest, AnInitialFolderThatIsNotThereIsTheDesktopsChoice) {
    Then([] {
        auto* const dialog = Front<QFileDialog>();
        EXPECT_TRUE(dialog->directory().exists());
        dialog->reject();
    });
    CStringA file;
    EXPECT_EQ(SelectFileBox(nullptr, file, "", "C:\\not\\there", 0, ""), 0);
}

TEST_F(QtDesktopTest, APathThatDoesNotFitIsRefusedAndTheBoxStays) {
    const QString deep = Folder() + "/" + QString(120, 'd') + "/" + QString(120, 'e');
    ASSERT_TRUE(QDir().mkpath(deep));
    const QString tooLong = deep + "/" + QString(100, 'f');
    const QString foreign = Folder() + "/" + QString::fromUtf8("\xD0\xAF.txt");
    for (const QString& path : {tooLong, foreign}) {
        SCOPED_TRACE(path.toStdString());
        WrittenFile(path);
        const std::string fits = WrittenFile(Folder() + "/fits.txt");
        QString said;
        testing::ThenIn<QFileDialog>([&] {
            Choose(path);
            testing::ThenIn<QMessageBox>([&] {
                said = Front<QMessageBox>()->text();
                Dismiss();
                testing::ThenIn<QFileDialog>([&] { Choose(QString::fromStdString(fits)); });
            });
        });
        CStringA file = "before";
        EXPECT_NE(SelectFileBox(nullptr, file, "", "", 0x1000, ""), 0);
        EXPECT_EQ(file, fits);
        EXPECT_TRUE(said.contains("cannot be used")) << said.toStdString();
        EXPECT_TRUE(said.contains(path));
    }
}

TEST_F(QtDesktopTest, SavingBelongsToTheMainWindow) {
    QMainWindow main;
    main.show();
    QWidget owner;
    main.activateWindow();
    QApplication::processEvents();
    EXPECT_EQ(QtDesktop().MainWindow(), HandleOf(&main));
    for (const bool save : {true, false}) {
        Then([&] {
            auto* const dialog = Front<QFileDialog>();
            EXPECT_EQ(dialog->parentWidget(), save ? static_cast<QWidget*>(&main) : &owner);
            dialog->reject();
        });
        CStringA file;
        EXPECT_EQ((save ? SaveFileBox : SelectFileBox)(HandleOf(&owner), file, "", "", 0, ""), 0);
    }
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Qt, DesktopContract, ::testing::Values(&MakeQtRig));
}

}  // namespace brindle
