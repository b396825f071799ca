#include "fiohost/program.h"
#include "platform/console/console.h"

int main(int count, char** values) {
  platform::showUtf8();
  return fiohost::runProgram(platform::utf8Arguments(count, values));
}
