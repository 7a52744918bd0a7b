# Linux on 32-bit x86 processors that have SSE2, built and run on a 64-bit one.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
# With SSE2 arithmetic is rounded to its type, as everywhere else. The kernel's headers serve both widths but are found
# for one; the package that puts a link to them conflicts with the compilers for ARM.
set(CMAKE_C_FLAGS_INIT "-m32 -idirafter /usr/include/x86_64-linux-gnu")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT} -msse2 -mfpmath=sse")
