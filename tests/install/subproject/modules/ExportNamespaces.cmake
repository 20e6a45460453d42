message(FATAL_ERROR "a module of the parent build, taken for one of the tree")
