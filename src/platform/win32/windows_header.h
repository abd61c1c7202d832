#pragma once

// The system's headers in the one order that works, without the macros that collide with ours.

#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif

// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
#include <windows.h>
#include <mstcpip.h>
#include <psapi.h>
#include <shellapi.h>
#include <shlobj.h>
#include <timeapi.h>
// clang-format on
