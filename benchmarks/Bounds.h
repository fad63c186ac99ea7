#pragma once

/// What a path may take at most: a ratio to what it is compared with, or an amount.
struct Bound
{
    const char *path;
    double most;
    const char *unit;
};

/// All bounds. A path begins with the name of the program that measures it.
constexpr Bound kBounds[] = {
    // A frame of a run whose host holds the frame before it.
    {"frame/1920x1080/5", 0.12, "of LIMIT"},
    {"frame/1920x1080/20", 0.15, "of LIMIT"},
    {"frame/1920x1080/100", 0.25, "of LIMIT"},
    {"frame/3840x2160/5", 0.18, "of LIMIT"},
    {"frame/3840x2160/20", 0.13, "of LIMIT"},
    {"frame/3840x2160/100", 0.17, "of LIMIT"},
    {"frame/1920x1080/20/translucent_background", 0.60, "of PLAIN"},
    // Hosts that hold more.
    {"frame/1920x1080/20/all_held", 1.12, "of LIMIT"},
    {"frame/1920x1080/100/all_held", 1.20, "of LIMIT"},
    {"frame/1920x1080/20/three_held", 0.80, "of LIMIT"},
    {"frame/1920x1080/100/three_held", 0.95, "of LIMIT"},
    {"frame/same_position", 1.0, "us"},
    // All frames of a step, from a slide that was just loaded.
    {"step/25_frames/20", 0.27, "of PLAIN"},
    {"step/4_frames/20", 1.05, "of PLAIN"},
    {"step/3_frames/20", 1.05, "of PLAIN"},
    {"step/2_frames/20", 1.05, "of PLAIN"},
    {"step/1_frame/20", 1.05, "of PLAIN"},

    {"walk/20000_effects", 0.05, "of the full walk"},
    {"analysis/20000_effects", 0.5, "of copying lists"},
    {"model/10_MB", 1.10, "of memcpy"},
    {"pagefile/10_MB", 1.10, "of read()"},
    {"static/1920x1080", 1.05, "of QImage"},
    {"slide/1920x1080/20", 1.10, "of its decoding"},
    {"startup/1920x1080", 1.05, "of QImage"},

    {"wrap/1000_pictures", 2.5, "of cp"},
    {"wrap/memory", 1024, "KiB"}, // more than for few pictures
    {"encode/400_of_60_kB", 1.30, "of copying"},
    {"encode/10_of_5_MB", 1.05, "of copying"},
    {"encode/memory", 1024, "KiB"}, // more than the largest file
    {"md5/256_MiB", 1.20, "of md5sum"},
    {"md5/memory", 16 * 1024, "KiB"}, // more than for no bytes
};
