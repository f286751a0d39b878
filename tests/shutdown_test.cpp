// Ends of a process in the wrong order: what a host keeps in static storage outlives the scopes, events, pictures and
// services it used, the library is called after main has returned, monitors end while their handlers run, and an action
// ends the process. Worth most under the address sanitizer, which also looks for what is left behind. With a desktop:
// brindle/platform/qt/shutdown_qt_test.cpp.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "brindle/behaviour/trigger_list.h"
#include "brindle/expressions/prepared_rule.h"
#include "brindle/macro/command_line.h"
#include "brindle/macro/ini_string.h"
#include "brindle/platform/fake/images_fake.h"
#include "brindle/platform/images.h"
#include "brindle/platform/service.h"
#include "brindle/skin/ov_skin.h"
#include "brindle/util/file_monitor.h"
#include "brindle/util/run_loop.h"
#include "brindle/util/timer.h"
#include "brindle/variables/hook/variable_manager_format_command_line_hook.h"
#include "brindle/variables/variable_manager.h"
#include "brindle/widgets/animation_update_controller.h"
#include "brindle/widgets/animation_update_target.h"
#include "brindle/widgets/button.h"
#include "brindle/widgets/flash_timer.h"
#include "brindle/widgets/shared_picture.h"
#include "testing/behaviour_kit.h"
#include "testing/own_process.h"
#include "testing/picture_bytes.h"

namespace {

using namespace brindle::testing;

// Statics of a function are destroyed in the reverse order of their making.

void AListAfterItsScopeAndTheVariablesAbove() {
    static ProbeList list;
    static VariableManager scope;
    static VariableManager inner;
    inner.setParent(&scope);
    const Rule rule = AddRule(list, CCommandTrigger::kFired);
    rule.action->repeats = true;
    rule.action->period = 1'000'000;
    list.Execute(new ProbeEvent, &inner);
    Require(list.GetRepeatCount() == 1);
}

void TriggersAndActionsAfterTheirListAndBeforeIt() {
    static ProbeTrigger early;
    static ProbeAction earlyAction;
    static ProbeList list;
    static ProbeTrigger late;
    static ProbeAction lateAction;
    const CCommandEvent* event = new ProbeEvent;
    list.AddRepeatAction(&early, event, &lateAction, nullptr);
    list.AddRepeatAction(&late, event, &earlyAction, nullptr);
    event->Release();
    Require(list.GetRepeatCount() == 2);
    static const AtEnd events([] { CCommandBehaviourList::CallOnTimer(); });
}

void AnActionThatEndsTheProcess() {
    static ProbeList other;
    static ProbeList list;
    AddRepeating(other, 1'000'000);
    AddRule(list, CCommandTrigger::kFired);
    AddRule(list, CCommandTrigger::kFired, [](const CCommandEvent*) {
        Reload(list);  // what runs is parked
        std::exit(0);
    });
    list.Execute(new ProbeEvent, nullptr);
}

void ATimerActionThatEndsTheProcess() {
    static ProbeList list;
    static ProbeList other;
    AddRepeating(list, 0, [](const CCommandEvent*) {
        AddRepeating(other, 0);
        std::exit(0);
    });
    AddRepeating(other, 0);
    CCommandBehaviourList::CallOnTimer();
}

void TheLibraryUsedAfterMain() {
    static const std::string ini = ::testing::TempDir() + "shutdown.ini";
    static const AtEnd last([] {
        Require(CCommandBehaviourList::GetHeadPosition() == nullptr);
        ProbeList list;
        const Rule rule = AddRule(list, CCommandTrigger::kFired);
        list.Execute(new ProbeEvent, nullptr);
        Require(rule.action->runs == 1);
        XMLReader reader;
        CStringA unused;
        Require(reader.LoadFromString("<BehaviourList/>", unused));
        list.Load(reader);
        Require(list.IsEmpty());
        CStringA line = "%c %%";
        FormatCommandLine(line, nullptr, nullptr, "caption", nullptr, nullptr, 0);
        Require(line == "caption %");
        CStringA value;
        Require(GetIniString("s", "k", "default", value, ini.c_str(), 100) == 7);
        OVSkin skin;
        Require(skin.LoadFromFile("missing"));
        std::unique_ptr<CCommandTrigger> made(CCommandTriggerList::CreateObject("ProbeTrigger", 0));
        Require(made != nullptr);
    });
    static ProbeList list;  // gone by then
    AddRepeating(list, 1'000'000);
}

void DocumentsRulesAndSkinsInAnyOrder() {
    static XMLReader copy;
    static XMLWriter writer;
    static OVSkin skin;
    static brindle::PreparedRule rule("a > 1 & b = \"x%\"");
    XMLReader reader = ReaderOf("<r><a/></r>");
    copy = reader;
    Require(copy.EnterSection("r", true));
    Require(writer.Initialize());
    writer.EnterCopy(copy);
    skin.SetExactProp("m", "e", "a", 1);
    static const AtEnd use([] {
        Require(copy.EnterSection("a", false));
        Require(!skin.GetXML().IsEmpty());
    });
}

void AHookWhoseVariablesAreGone() {
    static const AtEnd format([] {
        CStringA line = "{name}";
        FormatCommandLine(line, nullptr, nullptr, nullptr, nullptr, nullptr, 0);
        Require(line == "{name}");
    });
    static VariableManager scope;
    scope.addVariable(Variable("name", "value"));
    static const VariableHookScope hook(&scope);  // goes before its scope does
}

void AServiceThatIsGone() {
    static ProbeList list;
    static brindle::FakeClock clock;
    static const brindle::ScopedService<brindle::Clock> installed(brindle::SetClock, clock);
    AddRepeating(list, 1);
    static const AtEnd tick([] { CCommandBehaviourList::CallOnTimer(); });
}

void ATimerAfterItsLoop() {
    struct Ticker final : CTimer {
        void Start() {
            Create();
            CreateTimer(1, 1);
        }
    };
    static Ticker early;
    static brindle::RunLoop loop;
    static Ticker late;
    early.Start();
    late.Start();
    loop.RunOnce(1);
}

// A handler that is told of a change and stays until it is let go.
class SlowHandler final : public FileMonitor::Handler {
  public:
    void OnFileChanged(const CStringA&) override {
        m_entered = true;
        m_entered.notify_all();
        m_released.wait(false);
        m_left = true;
    }
    void WaitUntilEntered() { m_entered.wait(false); }
    void Release() {
        m_released = true;
        m_released.notify_all();
    }
    bool HasLeft() const { return m_left; }

  private:
    std::atomic<bool> m_entered{false};
    std::atomic<bool> m_released{false};
    std::atomic<bool> m_left{false};
};

std::string WatchedFile() {
    const std::string path = ::testing::TempDir() + "shutdown_watched";
    std::ofstream(path) << "before";
    return path;
}

void AMonitorWhoseHandlerRuns() {
    static SlowHandler handler;
    static const AtEnd afterwards([] { Require(handler.HasLeft()); });
    static FileMonitor monitor;  // its destructor waits for the handler
    static const AtEnd release([] { handler.Release(); });
    const std::string path = WatchedFile();
    Require(monitor.StartMonitoringFile(path, &handler));
    std::ofstream(path) << "after";
    handler.WaitUntilEntered();
}

void AMonitorThatItsHandlerDestroys() {
    struct Handler final : FileMonitor::Handler {
        void OnFileChanged(const CStringA&) override {
            monitor.reset();
            done = true;
            done.notify_all();
        }
        std::unique_ptr<FileMonitor> monitor = std::make_unique<FileMonitor>();
        std::atomic<bool> done{false};
    };
    static Handler handler;
    const std::string path = WatchedFile();
    Require(handler.monitor->StartMonitoringFile(path, &handler));
    std::ofstream(path) << "after";
    handler.done.wait(false);
}

// The size of a PNG of 4 by 3, told as a point a pixel.
void RequirePicture(IPicture* picture) {
    long width = 0;
    Require(picture && picture->get_Width(&width) == 0 && width == 4 * 2540 / 72);
}

std::string PictureFile() {
    const std::string path = ::testing::TempDir() + "shutdown.png";
    std::ofstream(path, std::ios::binary) << PngBytes(4, 3, std::vector<std::uint32_t>(12, 0xFF112233));
    return path;
}

void PicturesAfterTheCacheAndTheDesktop() {
    static IPicture* held = nullptr;     // by a reference of its own
    static IPicture* counted = nullptr;  // by the cache until the very end
    static CBitmap* bitmap = nullptr;
    static const std::string path = PictureFile();
    static const AtEnd last([] {
        RequirePicture(held);
        RequirePicture(counted);
        Require(CreateSharedPicture((path + "2").c_str()) == nullptr);
        held->Release();
        ReleaseSharedPicture(counted);
        ReleaseSharedBitmap(bitmap);
    });
    static brindle::FakeImages images;
    static const brindle::ScopedService<brindle::Images> installed(brindle::SetImages, images);
    held = CreateSharedPicture(path.c_str());
    RequirePicture(held);
    held->AddRef();
    ReleaseSharedPicture(held);
    counted = CreateSharedPicture(path.c_str());
    Require(counted && counted != held);
    bitmap = CreateSharedBitmap(path.c_str(), 0xFFFFFF);
    Require(bitmap);
}

void AButtonThatShowsAPictureGoesLast() {
    static OV::Button first;
    static brindle::FakeImages images;
    static const brindle::ScopedService<brindle::Images> installed(brindle::SetImages, images);
    static OV::Button second;
    const CStringA path(PictureFile());
    Require(second.SetImage(path, OV::Button::ImageNormal));
    first = second;
}

void ListenersThatAreNeverTakenBack() {
    struct Target final : CAnimationUpdateTarget {
        void DoUpdate(unsigned int, std::uint64_t& nextDue) override { nextDue = 1; }
    };
    static Target early;
    static CFlashCallBack listening;
    static const AtEnd update([] {
        unsigned int wait = 0;
        CAnimationUpdateController& controller = CAnimationUpdateController::GetInstance();
        controller.DoUpdate();
        Require(controller.NeedsUpdate(wait) && controller.IsRegistered(&early));
        brindle::RunLoop::RunDue();
    });
    static Target late;
    static CFlashCallBack alsoListening;
    for (Target* const each : {&early, &late}) CAnimationUpdateController::GetInstance().Register(each);
    for (CFlashCallBack* const each : {&listening, &alsoListening}) Require(StartFlashTimer(each) == 1);
}

TEST(ShutdownTest, InAnyOrder) {
    RegisterProbes();
    ExpectGoodEnds({
        {"a list after its scope", AListAfterItsScopeAndTheVariablesAbove},
        {"triggers after their list and before it", TriggersAndActionsAfterTheirListAndBeforeIt},
        {"an action that ends the process", AnActionThatEndsTheProcess},
        {"a timer action that ends the process", ATimerActionThatEndsTheProcess},
        {"the library used after main", TheLibraryUsedAfterMain},
        {"documents, rules and skins in any order", DocumentsRulesAndSkinsInAnyOrder},
        {"a hook whose variables are gone", AHookWhoseVariablesAreGone},
        {"a service that is gone", AServiceThatIsGone},
        {"a timer after its loop", ATimerAfterItsLoop},
        {"a monitor whose handler runs", AMonitorWhoseHandlerRuns},
        {"a monitor that its handler destroys", AMonitorThatItsHandlerDestroys},
        {"pictures after the cache and the desktop", PicturesAfterTheCacheAndTheDesktop},
        {"a button that shows a picture goes last", AButtonThatShowsAPictureGoesLast},
        {"animation targets and call-backs that are never taken back", ListenersThatAreNeverTakenBack},
    });
}

}  // namespace
