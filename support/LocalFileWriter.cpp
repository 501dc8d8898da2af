#include "support/LocalFileWriter.h"

#include <random>

std::string LocalFileWriter::PartName() {
    constexpr char kDigits[] = "0123456789abcdef";
    std::random_device random;
    std::string name = ".brevint-";
    for (int i = 0; i < 16; ++i) {
        name += kDigits[random() % 16];
    }
    return name + ".part";
}
