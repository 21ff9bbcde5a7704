#include <cstdio>
#include <fstream>
#include <string>

#include "samples/Samples.h"

/// Writes the sample fonts into the folder that is the only argument.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  for (const auto& [name, bytes] : test::MakeSamples()) {
    const std::string path = std::string(argv[1]) + "/" + name;
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush()) {
      std::fprintf(stderr, "%s: cannot be written\n", path.c_str());
      return 1;
    }
  }
  return 0;
}
