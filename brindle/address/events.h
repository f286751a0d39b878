// All event classes.
#pragma once

#include "brindle/address/button_press_event.h"
#include "brindle/address/caption_changed_event.h"
#include "brindle/address/check_box_checked_press_event.h"
#include "brindle/address/check_box_un_checked_press_event.h"
#include "brindle/address/event.h"
#include "brindle/address/meter_value_change_event.h"
#include "brindle/address/meter_zone_change_event.h"
#include "brindle/address/poll_event.h"
#include "brindle/address/state_changed_event.h"
#include "brindle/address/state_event.h"
