// Writes the sample ECU documents into the folder given as argument (the examples folder):
//   make_samples examples
#include <fstream>
#include <iostream>
#include <string>

#include "sample_ecu.hpp"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_samples FOLDER\n";
    return 2;
  }
  const std::string folder = argv[1];
  for (auto line : {tessaly::examples::SampleLine::kKLine, tessaly::examples::SampleLine::kCan}) {
    const std::string path = folder + "/" + tessaly::examples::SampleFileName(line);
    const std::string text = tessaly::examples::SampleDocument(line);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) {
      std::cerr << "cannot write " << path << '\n';
      return 1;
    }
    std::cout << path << ": " << text.size() << " bytes\n";
  }
  return 0;
}
