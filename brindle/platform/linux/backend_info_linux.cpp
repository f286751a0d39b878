// What the Linux backend is made of. Tests: environment_test.cpp.
#include <gnu/libc-version.h>
#include <libxml/parser.h>
#include <net-snmp/net-snmp-config.h>

#include <net-snmp/version.h>
#include <sys/utsname.h>

#include <string_view>

#include "brindle/framework/number_text.h"
#include "brindle/platform/backend_info.h"

namespace brindle {
namespace {

// libxml2 tells its version as "20914", with suffixes in some builds: 2.9.14.
std::string XmlVersion() {
    const std::string_view told = xmlParserVersion;
    const NumberRead<std::int32_t> number = ReadLong(told, 10);
    if (number.end == 0) return std::string(told);
    return PrintInt(number.value / 10000) + "." + PrintInt(number.value / 100 % 100) + "." +
           PrintInt(number.value % 100) + std::string(told.substr(number.end));
}

std::string SystemName() {
    utsname name{};
    if (::uname(&name) != 0) return {};
    return std::string(name.sysname) + " " + name.release + " " + name.machine;
}

// "6.1.0" of "6.1.0-18-amd64".
std::string KernelVersion() {
    utsname name{};
    if (::uname(&name) != 0) return {};
    const std::string_view release = name.release;
    return std::string(release.substr(0, release.find_first_not_of("0123456789.")));
}

}  // namespace

BackendInfo DescribeBackend() {
    BackendInfo info;
    info.name = "linux";
    info.system = SystemName();
    const std::string c = ::gnu_get_libc_version();
    info.parts = {{"clock", "glibc", c},
                  {"code page", "own table for 1252, iconv of glibc", c},
                  {"directory watch", "inotify", KernelVersion()},
                  {"files", "glibc", c},
                  {"SNMP", "net-snmp", ::netsnmp_get_version()},
                  {"XML", "libxml2", XmlVersion()}};
    return info;
}

}  // namespace brindle
