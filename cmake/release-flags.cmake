# Read by project() before it settles what Release means where nobody says so: size.
string(REPLACE "-O3 -DNDEBUG" "-Os" CMAKE_CXX_FLAGS_RELEASE_INIT "${CMAKE_CXX_FLAGS_RELEASE_INIT}")
