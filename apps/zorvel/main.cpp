#include "ui/desktop_program.h"

int main(int argc, char** argv) {
  return zorvel::ui::RunDesktopProgram(argc, argv);
}
