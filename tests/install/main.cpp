// An agent as somebody else would build it: installed headers and libraries, nothing of this tree.
#include <iostream>

#include "Mox/Exception.h"
#include "Mox/Type.h"

int main() {
  try {
    throw Mox::RangeException("out of range");
  } catch (const Mox::Exception& e) {
    std::cout << e.what() << '\n';
  }
  for (const Mox::Type* type : Mox::Type::all()) std::cout << type->name() << '\n';
  return Mox::Type::all().empty() ? 1 : 0;
}
