#pragma once
// Decimal numbers in texts, as arena::real_from_chars reads them everywhere.
#include "runtime/values/real_chars.h"
