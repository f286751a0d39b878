// The application object. Tests: map_tool_test.cpp.
#include "apps/brindle-map/map_application.h"

#include <QtWidgets/QApplication>

#include <cstdlib>
#include <string>

#include "apps/brindle/cli_output.h"

namespace brindle::map {
namespace {

// While an application object is made.
struct Start {
    const char* advice;
    std::string why;  // what was first found wrong with the window system
};
constinit Start* g_start = nullptr;

// Qt says what is wrong in a warning, and then, at length, that it is the end.
[[noreturn]] void EndWithoutWindows(const Start& start, const QString& text) {
    const std::string why = start.why.empty() ? text.section('\n', 0, 0).toStdString() : start.why;
    tool::Complain("display", why + start.advice);
    std::_Exit(tool::kWrongUsage);
}

// Qt's own remarks are not for those who look at the map; what ends the program is.
void TellOfQt(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (g_start && type == QtFatalMsg) EndWithoutWindows(*g_start, text);
    const bool ofWindows = type == QtWarningMsg && QByteArrayView(context.category).startsWith("qt.qpa.");
    if (g_start && ofWindows && g_start->why.empty()) g_start->why = text.toStdString();
    if (type == QtCriticalMsg || type == QtFatalMsg) tool::Complain("Qt", text.toStdString());
}

}  // namespace

std::unique_ptr<QApplication> MakeApplication(int& count, char** arguments, const char* advice) {
    Start start{advice, {}};
    g_start = &start;
    qInstallMessageHandler(TellOfQt);
    auto application = std::make_unique<QApplication>(count, arguments);
    g_start = nullptr;
    return application;
}

}  // namespace brindle::map
