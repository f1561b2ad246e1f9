#pragma once

#include <QtGlobal>

namespace minutor {

class DataDir;
class Prompter;

// The value added tax in whole percent from "Tax.dat". A missing file is made
// with 16; a value outside 0 to 100 is reported, corrected to 16 in the file,
// and 16 is used.
quint8 ReadTax(const DataDir& dir, Prompter& prompter);

}  // namespace minutor
