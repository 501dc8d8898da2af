#include "support/LocalFileWriter.h"

#include "base/Hex.h"

#include <random>

std::string LocalFileWriter::PartName() {
    std::random_device random;
    std::string name = ".brevint-";
    for (int i = 0; i < 16; ++i) {
        name += base::kHexDigits[random() % 16];
    }
    return name + ".part";
}
