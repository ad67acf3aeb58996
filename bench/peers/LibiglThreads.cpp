// libigl once more, under names of its own, for the rows of several threads.

#define VERIDANE_LIBIGL_THREADS
#define igl iglWithThreads
#define AddLibigl AddLibiglThreads

#include "peers/Libigl.cpp"
