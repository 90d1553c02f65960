#pragma once

#include <gmime/gmime.h>

#include <string>

// The message class that the content calls for: reports, meeting requests and S/MIME mail have one of their
// own, everything else is IPM.Note. `top` is the mail's outermost part, only borrowed.
std::string MessageClassOf(GMimeObject* top);
