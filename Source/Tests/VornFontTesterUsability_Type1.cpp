#include "Tests/VornFontTesterUsability_Type1.h"
