#pragma once

#include <string>

namespace hcr {

// Reading of the reference data into the tables of dbase.h. Run thread, while nobody reads them.

/// False if the file couldn't be parsed; throws std::runtime_error when it is missing or can't be deciphered, and
/// UserErrorException 61.
bool gf_readDbase();
/// The tables from the text of a document, which is used up. Returns the parser's description of a fault, empty when
/// all is well; the tables are then empty. Throws UserErrorException 61.
std::string gf_readDbaseText(std::string text);

}  // namespace hcr
