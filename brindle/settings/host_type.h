// eHostType: what kind of host object a behaviour list belongs to. Triggers are offered by kind.
#pragma once

namespace brindle {

enum eHostType : int {
    eHostMapObject = 0,  // an object on a map: device symbol, caption, check box
    eHostButton = 1,
    eHostMeter = 2,
    eHostSystem = 3,  // the system as a whole, no single object
};

}  // namespace brindle
