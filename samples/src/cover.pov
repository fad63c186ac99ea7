// The cover: a full moon rises over the sea, shortly after sunset.
#version 3.7;
global_settings { assumed_gamma 1.0 max_trace_level 6 }
#include "lighthouse.inc"

camera {
  location <0, 7.5, -105>
  up y*1754 right x*1240
  angle 34
  look_at <0, 21.5, 0>
}

// Afterglow behind the camera, and a faint light from the moon.
light_source { <-500, 190, -700> rgb <1.05, 0.66, 0.50> }
light_source { <300, 220, 600> rgb <0.20, 0.24, 0.36> shadowless }

#declare Sky = pigment {
  gradient y
  color_map {
    [0.000 rgb <0.62, 0.36, 0.31>]
    [0.035 rgb <0.66, 0.37, 0.33>]
    [0.090 rgb <0.45, 0.29, 0.36>]
    [0.170 rgb <0.200, 0.190, 0.325>]
    [0.280 rgb <0.070, 0.105, 0.225>]
    [0.420 rgb <0.022, 0.048, 0.130>]
    [1.000 rgb <0.008, 0.020, 0.070>]
  }
}
sky_sphere {
  pigment { Sky }
  pigment {
    wrinkles turbulence 0.35 octaves 7 lambda 2.4
    scale <0.55, 0.055, 0.55> translate <0.2, 0.06, 0>
    color_map {
      [0.00 rgbt <1, 1, 1, 1>]
      [0.52 rgbt <0.70, 0.36, 0.36, 1.00>]
      [0.75 rgbt <0.60, 0.31, 0.34, 0.74>]
      [1.00 rgbt <0.85, 0.48, 0.42, 0.55>]
    }
  }
}

// Stars, only where the sky is dark
#local R = seed(11);
#local I = 0;
#while (I < 300)
  #local U = rand(R)*2 - 1;
  #local V = pow(rand(R), 0.8);
  #local B = pow(rand(R), 4);
  sphere { <U*1400, 800 + V*1050, 3000>, 1.1 + 1.6*B no_reflection no_shadow
    pigment { rgb <0.9, 0.93, 1>*(0.22 + 0.7*B) }
    finish { ambient 0 emission 1 diffuse 0 } }
  #local I = I + 1;
#end

// Moon: one disc to see, a brighter one to glitter on the sea
#declare MoonAt = <335, 465, 2500>;
sphere { MoonAt, 92 no_reflection no_shadow
  pigment { bozo turbulence 0.7 octaves 5 lambda 2.2 scale 62 translate <20, 30, 12>
    color_map { [0.30 rgb <1.0, 0.93, 0.80>] [0.55 rgb <0.98, 0.88, 0.74>] [0.75 rgb <0.70, 0.62, 0.56>] } }
  finish { ambient 0 emission 1 diffuse 0 } }
sphere { MoonAt, 100 no_image no_shadow
  pigment { rgb <1, 0.84, 0.62>*6 }
  finish { ambient 0 emission 1 diffuse 0 } }
// Its halo
disc { MoonAt + <2, 3, 30>, z, 900 no_reflection no_shadow
  pigment { spherical scale 620 translate MoonAt + <2, 3, 30>
    color_map {
      [0.0 rgbt <1, 0.75, 0.55, 1>]
      [0.6 rgbt <1, 0.75, 0.55, 0.90>]
      [1.0 rgbt <1, 0.82, 0.62, 0.55>] } }
  finish { ambient 0 emission 1 diffuse 0 } }

// Sea
plane { y, 0
  pigment { rgb <0.012, 0.030, 0.048> }
  normal { average normal_map {
      [1.0 bumps 0.9 scale <9, 1, 3.2> rotate y*12]
      [1.0 bumps 0.8 scale <2.6, 1, 1.1> rotate -y*16]
      [0.7 bumps 0.6 scale <0.8, 1, 0.4>] }
    }
  finish { ambient 0 diffuse 0.5 reflection { 0.03, 0.95 fresnel on } conserve_energy }
  interior { ior 1.33 }
}

// Headland
#declare Rough = function { pattern { granite scale 0.5 } }
#declare Lumps = function {
  pattern { crackle form <-1, 1, 0> scale <0.055, 0.085, 1> rotate z*25 turbulence 0.2 } }
#declare Bump = function(x, y, cx, cy, rx, ry) { exp(-(pow((x - cx)/rx, 2) + pow((y - cy)/ry, 2))) }
#declare Mound = function(x, y) {
  Bump(x, y, 0.46, 0.50, 0.20, 0.20) + 0.5*Bump(x, y, 0.72, 0.44, 0.13, 0.15)
  + 0.34*Bump(x, y, 0.17, 0.45, 0.10, 0.15) }
#declare Rock = height_field {
  function 1000, 1000 {
    min(1, max(0, 0.60*min(Mound(x, y), 0.86)
      + min(Mound(x, y), 0.9)*(0.38*Rough(x, y, 0) + 0.34*Lumps(x, y, 0)) - 0.14)) }
  smooth
  water_level 0.002
  translate <-0.46, 0, -0.5>
  scale <74, 16, 60>
}
#macro Stone(Dark, Light, Size)
  pigment { granite turbulence 0.3 scale Size color_map { [0.2 rgb Dark] [0.75 rgb Light] } }
  normal { granite 0.9 scale Size*0.7 }
  finish { ambient 0.04 diffuse 0.85 }
#end
object { Rock
  texture {
    gradient y scale 14
    turbulence 0.10
    texture_map {
      [0.00 pigment { rgb <0.012, 0.014, 0.015> } normal { granite 0.6 }
        finish { diffuse 0.6 specular 0.4 roughness 0.03 }]
      [0.09 pigment { rgb <0.022, 0.022, 0.018> } normal { granite 0.6 }
        finish { diffuse 0.7 specular 0.2 }]
      [0.15 Stone(<0.07, 0.055, 0.045>, <0.24, 0.19, 0.15>, 1.6)]
      [0.62 Stone(<0.09, 0.07, 0.055>, <0.34, 0.28, 0.22>, 1.6)]
      [0.72 Stone(<0.05, 0.06, 0.03>, <0.17, 0.16, 0.08>, 0.8)]
      [1.00 Stone(<0.05, 0.06, 0.03>, <0.17, 0.16, 0.08>, 0.8)]
    }
  }
  translate <-9, -0.3, 6>
}

object { Lighthouse translate <-10.5, 8.5, 5> }
light_source { <-10.5, 29.8, 0> rgb <0.5, 0.36, 0.18> fade_distance 8 fade_power 2 shadowless }

// Keeper's house
#macro Gable(Length, Width, Height)
  prism { linear_sweep linear_spline -Length/2, Length/2, 4
    <-Width/2, 0>, <Width/2, 0>, <0, Height>, <-Width/2, 0>
    rotate -x*90 rotate y*90 }
#end
union {
  box { <-3.6, -1, -2.2>, <3.6, 2.8, 2.2> texture { Plaster } }
  box { <-3.8, -5, -2.6>, <3.8, -1, 2.4> texture { Stone(<0.08, 0.07, 0.06>, <0.26, 0.21, 0.17>, 0.8) } }
  object { Gable(7.2, 4.4, 1.9) translate y*2.8 texture { Plaster } }
  object { Gable(6.9, 5.2, 2.25) translate y*2.7
    texture { pigment { rgb <0.13, 0.12, 0.14> } normal { brick 0.3 scale 0.06 }
      finish { ambient 0.05 diffuse 0.7 } } }
  box { <1.9, 3.2, -0.4>, <2.7, 6.0, 0.4> texture { Plaster } }
  #local X = -2.1;
  #while (X < 3)
    box { <X - 0.55, 0.9, -2.24>, <X + 0.55, 2.15, -2> texture { Iron } }
    box { <X - 0.48, 0.97, -2.26>, <X - 0.04, 2.08, -2> texture { Glow } }
    box { <X + 0.04, 0.97, -2.26>, <X + 0.48, 2.08, -2> texture { Glow } }
    #local X = X + 4.2;
  #end
  box { <-0.5, -1, -2.24>, <0.5, 2.1, -2> texture { Paint } }
  rotate y*14
  translate <-1.5, 8.1, 3>
}
