// The precompiled header's own translation unit; the header is the point.
