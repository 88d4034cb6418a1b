# MORVANE_ABI: the C++ ABI of the compiler, Itanium or Microsoft. It decides where the functions of an interface lie in its
# table, so that library and application must have the same one.
set(MORVANE_ABI Itanium)
if(MSVC OR CMAKE_CXX_SIMULATE_ID STREQUAL "MSVC")
  set(MORVANE_ABI Microsoft)
endif()
