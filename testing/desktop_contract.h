// What every desktop keeps to. A test program instantiates the suite with a rig: the service and the ways of a user.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "brindle/platform/desktop.h"

namespace brindle::testing {

class DesktopRig {
  public:
    virtual ~DesktopRig() = default;
    virtual Desktop& Service() = 0;
    // What the user does with the next box.
    virtual void WillConfirmMessage() = 0;
    virtual std::string WillChoose() = 0;  // the file that is chosen; it exists
    virtual void WillCancel() = 0;
};
using MakeDesktopRig = std::unique_ptr<DesktopRig> (*)();

class DesktopContract : public ::testing::TestWithParam<MakeDesktopRig> {
  protected:
    DesktopRig& rig() { return *m_rig; }
    Desktop& service() { return m_rig->Service(); }

  private:
    std::unique_ptr<DesktopRig> m_rig = GetParam()();
};

TEST_P(DesktopContract, MessagesReturnWhenTheyWereRead) {
    for (const MessageIcon icon : {MessageIcon::kWarning, MessageIcon::kError})
        for (const char* text : {"", "One line", "Two\nlines", "<b>Caf\xE9</b> %s", "\x01\x7F"}) {
            rig().WillConfirmMessage();
            service().ShowMessage(nullptr, icon, text);
        }
}

TEST_P(DesktopContract, AChosenFileIsAnswered) {
    for (const bool save : {false, true}) {
        FileBoxRequest request;
        request.save = save;
        const std::string expected = rig().WillChoose();
        std::string file = "before";
        EXPECT_TRUE(service().ChooseFile(request, file));
        EXPECT_EQ(file, expected);
    }
}

TEST_P(DesktopContract, CancellingIsNoError) {
    for (const bool save : {false, true}) {
        FileBoxRequest request;
        request.save = save;
        rig().WillCancel();
        std::string file = "before";
        EXPECT_FALSE(service().ChooseFile(request, file));
        EXPECT_EQ(file, "before");
        EXPECT_EQ(service().FileBoxError(), 0u);
    }
}

TEST_P(DesktopContract, WithoutAWindowThereIsNoMainOne) {
    EXPECT_EQ(service().MainWindow(), nullptr);
}

}  // namespace brindle::testing
