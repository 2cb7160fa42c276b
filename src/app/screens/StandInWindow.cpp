#include "app/screens/StandInWindow.h"
