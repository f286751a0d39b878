// The main function of every test program. BRINDLE_TEST_LOCALE names a process locale to run under (a desktop
// toolkit sets one in real hosts); a locale that is not installed is an error, not a silent pass.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
    if (const char* locale = std::getenv("BRINDLE_TEST_LOCALE"); locale && *locale) {
        if (!std::setlocale(LC_ALL, locale)) {
            std::fprintf(stderr, "locale %s is not installed\n", locale);
            return 2;
        }
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
