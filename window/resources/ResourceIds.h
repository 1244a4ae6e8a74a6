#pragma once

// Read by the resource compiler as well, which knows no other constants than these.
#define IDI_FONKLAV 1
