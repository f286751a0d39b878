#include "brindle/platform/qt/qt_test_application.h"

#include <QtGui/QGuiApplication>

namespace brindle::testing {

void NeedQtApplication() {
    if (QCoreApplication::instance()) return;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    static QGuiApplication application(count, arguments);
}

}  // namespace brindle::testing
