// The application object of the map view, and what Qt has to say meanwhile.
#pragma once

#include <memory>

class QApplication;

namespace brindle::map {

// Makes the application object. Qt ends a program to which it can give no window system by a signal, as if it had
// crashed; here that is told in one line, `advice` behind it, and the program exits with the code of wrong usage.
// From then on what Qt finds critical is told, and its remarks are not. The arguments must outlive what is returned.
std::unique_ptr<QApplication> MakeApplication(int& count, char** arguments, const char* advice);

}  // namespace brindle::map
