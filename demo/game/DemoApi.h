// DemoApi.h - the demo's classes are built into the game library and used by
// the room libraries, so they are exported from it (the build hides every
// symbol that is not marked).
#ifndef DEMO_API_H
#define DEMO_API_H

#define DEMO_API __attribute__((visibility("default")))

#endif
