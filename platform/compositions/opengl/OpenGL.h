#pragma once

// The functions of OpenGL 3.3 core, straight from the system's library: it hands every call to
// whatever context is current, one of Qt's or one of our own.
#define GL_GLEXT_PROTOTYPES 1
#include <GL/gl.h>
#include <GL/glext.h>
