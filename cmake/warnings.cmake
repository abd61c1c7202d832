add_library(halcyrane_warnings INTERFACE)
target_compile_options(halcyrane_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
  -Wno-missing-field-initializers)  # records are filled by designated initialisers; what isn't named has its default
