#pragma once

#define IDR_QUORVEX 101
