#pragma once

// Marks a class or function that the shared library exports; everything else in it is hidden.
#define WEBFORMAT_EXPORT __attribute__((visibility("default")))
