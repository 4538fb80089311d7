#include "SoftTestSupport.h"
