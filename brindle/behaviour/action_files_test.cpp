// The kept file names, the selection of actions, and the interfaces that host modules exchange.
#include "brindle/behaviour/action_files.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include "brindle/behaviour/action_selection.h"
#include "brindle/behaviour/behaviour_list.h"
#include "brindle/behaviour/control_menu_client_base.h"
#include "brindle/behaviour/menu_loader.h"
#include "brindle/macro/recording_data_test.h"
#include "brindle/platform/fake/programs_fake.h"
#include "brindle/platform/service.h"
#include "testing/layout.h"

namespace {

using brindle::testing::RecordingData;
using brindle::testing::ScopedData;
using brindle::testing::SlotOf;

TEST(ActionFiles, NamesAreKeptAsCopies) {
    EXPECT_EQ(GetCommandActionsIniFile(), "") << "empty until set";
    EXPECT_EQ(GetUserInterfaceIniFile(), "");
    char name[] = "C:\\actions.ini";
    SetCommandActionsIniFile(name);
    SetUserInterfaceIniFile("/etc/ui.ini");
    name[0] = 'X';
    EXPECT_EQ(GetCommandActionsIniFile(), "C:\\actions.ini");
    EXPECT_EQ(GetUserInterfaceIniFile(), "/etc/ui.ini");
    SetCommandActionsIniFile(nullptr);
    EXPECT_EQ(GetCommandActionsIniFile(), "");
    EXPECT_EQ(GetUserInterfaceIniFile(), "/etc/ui.ini") << "each by itself";
    SetUserInterfaceIniFile("");
}

class SelectingData final : public IBrindleData {
  public:
    int GetAddressStatus(const FullAddress_t*) override { return 0; }
    CStringA GetHashFieldValue(const FullAddress_t*, const char*) override { return {}; }
    void WriteCommandLog(const char*) override {}
    int SelectActions(CCommandBehaviourList& given, int number, brindle::eHostType kind) override {
        if (fail) throw std::runtime_error("host");
        list = &given;
        selection = number;
        host = kind;
        return answer;
    }

    const CCommandBehaviourList* list = nullptr;
    int selection = 0;
    brindle::eHostType host = brindle::eHostMapObject;
    int answer = 0;
    bool fail = false;
};

TEST(SelectActions, AnswersOneOnlyForOne) {
    CCommandBehaviourList list(CCommandTrigger::eHostButton);
    EXPECT_EQ(SelectActions(list, 1, CCommandTrigger::eHostButton), 0) << "no host";
    SelectingData data;
    const ScopedData registered(&data);
    struct Row {
        int answer;
        int expected;
    };
    for (const Row& row : {Row{0, 0}, Row{1, 1}, Row{2, 0}, Row{-1, 0}}) {
        SCOPED_TRACE(row.answer);
        data.answer = row.answer;
        EXPECT_EQ(SelectActions(list, row.answer + 40, CCommandTrigger::eHostMeter), row.expected);
        EXPECT_EQ(data.selection, row.answer + 40);
        EXPECT_EQ(data.list, &list);
        EXPECT_EQ(data.host, CCommandTrigger::eHostMeter);
    }
    data.fail = true;
    EXPECT_THROW(SelectActions(list, 1, CCommandTrigger::eHostButton), std::runtime_error);
}

// The destructor takes the slots 0 and 1.
TEST(MenuInterfaces, SlotsStandInTheirOrder) {
    using Client = ControlMenuClientBase;
    const std::vector<std::size_t> client = {
        SlotOf(&Client::GetClientCaption),   SlotOf(&Client::GetClientHostType),
        SlotOf(&Client::GetClientAddress),   SlotOf(&Client::GetClientBehaviours),
        SlotOf(&Client::GetClientVariables), SlotOf(&Client::IsMenuCommandEnabled),
        SlotOf(&Client::OnMenuCommand),      SlotOf(&Client::OnMenuClosed)};
    EXPECT_EQ(client, (std::vector<std::size_t>{2, 3, 4, 5, 6, 7, 8, 9}));
    const std::vector<std::size_t> loader = {
        SlotOf(&MenuLoader::LoadMenus),      SlotOf(&MenuLoader::ClearMenus),
        SlotOf(&MenuLoader::GetMenuCount),   SlotOf(&MenuLoader::GetMenuName),
        SlotOf(&MenuLoader::FindMenu),       SlotOf(&MenuLoader::GetItemCount),
        SlotOf(&MenuLoader::GetItemText),    SlotOf(&MenuLoader::GetItemCommandLine),
        SlotOf(&MenuLoader::GetItemCommand), SlotOf(&MenuLoader::ShowMenu)};
    EXPECT_EQ(loader, (std::vector<std::size_t>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    struct NextClient : Client {
        virtual void Own() {}
    };
    struct NextLoader : MenuLoader {
        virtual void Own() {}
    };
    EXPECT_EQ(SlotOf(&NextClient::Own), 10u) << "eight operations";
    EXPECT_EQ(SlotOf(&NextLoader::Own), 12u) << "ten operations";
    EXPECT_EQ(sizeof(Client), sizeof(void*)) << "no state";
    EXPECT_EQ(sizeof(MenuLoader), sizeof(void*));
    EXPECT_TRUE(std::is_abstract_v<Client> && std::is_abstract_v<MenuLoader>);
    EXPECT_TRUE(std::has_virtual_destructor_v<Client> && std::has_virtual_destructor_v<MenuLoader>);
    EXPECT_TRUE(std::is_copy_assignable_v<Client> && std::is_copy_assignable_v<MenuLoader>);
}

// What a host supplies, with a value of its own.
struct HostClient final : ControlMenuClientBase {
    explicit HostClient(const char* name) : caption(name) {}
    CStringA GetClientCaption() const override { return caption; }
    brindle::eHostType GetClientHostType() const override { return CCommandTrigger::eHostButton; }
    bool GetClientAddress(FullAddress_t&) const override { return false; }
    CCommandBehaviourList* GetClientBehaviours() override { return nullptr; }
    const VariableManager* GetClientVariables() const override { return nullptr; }
    bool IsMenuCommandEnabled(unsigned long) const override { return true; }
    void OnMenuCommand(unsigned long) override {}
    void OnMenuClosed() override {}
    CStringA caption;
};
struct HostMenus final : MenuLoader {
    bool LoadMenus(const char*) override { return ++menus > 0; }
    void ClearMenus() override { menus = 0; }
    int GetMenuCount() const override { return menus; }
    CStringA GetMenuName(int) const override { return ""; }
    int FindMenu(const char*) const override { return -1; }
    int GetItemCount(int) const override { return 0; }
    CStringA GetItemText(int, int) const override { return ""; }
    CStringA GetItemCommandLine(int, int) const override { return ""; }
    unsigned long GetItemCommand(int, int) const override { return 0; }
    bool ShowMenu(int, ControlMenuClientBase&) override { return false; }
    int menus = 0;
};

TEST(MenuInterfaces, HostsDeriveCopyAndDestroyThroughThem) {
    HostClient button("Button");
    HostClient meter(button);
    EXPECT_EQ(meter.caption, "Button");
    meter = HostClient("Meter");
    EXPECT_EQ(meter.caption, "Meter");
    auto menus = std::make_unique<HostMenus>();
    EXPECT_TRUE(menus->LoadMenus("menus.ini"));
    auto copy = std::make_unique<HostMenus>(*menus);
    menus->ClearMenus();
    EXPECT_EQ(copy->GetMenuCount(), 1);
    *copy = *menus;
    EXPECT_EQ(copy->GetMenuCount(), 0);
    const std::unique_ptr<MenuLoader> loader = std::move(copy);
    const std::unique_ptr<ControlMenuClientBase> client = std::make_unique<HostClient>("Map");
    EXPECT_EQ(client->GetClientCaption(), "Map");
    EXPECT_FALSE(loader->ShowMenu(0, *client));
}

TEST(CallOnTimer, TakesEndedProgramsAway) {
    brindle::FakePrograms programs;
    const brindle::ScopedService<brindle::Programs> installed(&brindle::SetPrograms, programs);
    CCommandBehaviourList::CallOnTimer();
    CCommandBehaviourList::CallOnTimer();
    EXPECT_EQ(programs.reaps, 2);
}

}  // namespace
