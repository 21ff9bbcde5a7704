#pragma once

#include <Tova/Tova.hpp>

/// The name of the outline file for a PostScript name: the first five letters of its first word and three of each
/// further one, where capital letters start words and a leading "ITC-" is left out. None for a name of more than
/// 255 UTF-16 units.
Tova::String FTMake533NameFromFullName(TovaStringRef iName);
