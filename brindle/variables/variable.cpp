#include "brindle/variables/variable.h"

Variable Variable::empty() {
    return {};
}
