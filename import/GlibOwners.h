#pragma once

#include <glib-object.h>

#include <memory>

struct GlibFree
{
    void operator()(void* memory) const noexcept { g_free(memory); }
};

// Text that GLib or GMime allocated for the caller.
using GlibText = std::unique_ptr<char, GlibFree>;

struct GlibUnref
{
    void operator()(void* object) const noexcept { g_object_unref(object); }
};

// One reference to a GObject.
template <typename T>
using GlibObject = std::unique_ptr<T, GlibUnref>;
