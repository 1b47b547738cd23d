// Runs a program of another platform under an emulator, in its place: with its name, its arguments
// and its terminal. This program lies as "emulated/NAME" below the folder of the program NAME. The
// variable HARRIER_EMULATOR is the path of the emulator, which takes the name as "-0 NAME" (QEMU
// does).

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

int main(int, char* argv[]) {
  const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
  std::string program = self.parent_path().parent_path() / self.filename();
  char* const emulator = std::getenv("HARRIER_EMULATOR");
  char name_option[] = "-0";
  if (emulator == nullptr) return 126;
  std::vector<char*> words{emulator, name_option, argv[0], program.data()};
  for (char** word = argv + 1; *word != nullptr; ++word) words.push_back(*word);
  words.push_back(nullptr);
  execv(emulator, words.data());
  return 126;
}
