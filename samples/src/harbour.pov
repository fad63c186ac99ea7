// A small drying harbour. Declare=Level=... sets the sea level in metres
// above chart datum; the sand by the quay lies one metre above it.
#version 3.7;
global_settings { assumed_gamma 1.0 max_trace_level 8 }
#include "functions.inc"
#include "lighthouse.inc"
#ifndef (Level) #declare Level = 5.6; #end
#declare Low = (Level < 3);

camera {
  location <-11, 10.2, -17>
  up y*446 right x*1060
  angle 60
  look_at <3.4, 5.5, 12>
}
// The sun: low water in the morning, high water in the afternoon
light_source { #if (Low) <330, 430, -520> #else <-520, 430, -330> #end rgb <1.50, 1.36, 1.14> }
light_source { <0, 700, -500> rgb <0.20, 0.24, 0.30> shadowless }

sky_sphere {
  pigment { gradient y color_map {
    [0.00 rgb <0.70, 0.81, 0.87>] [0.12 rgb <0.42, 0.63, 0.81>] [0.5 rgb <0.12, 0.31, 0.60>] } }
  pigment { wrinkles turbulence 0.5 octaves 7 lambda 2.3 scale <0.5, 0.11, 0.5> translate <0.4, 0, 0.3>
    color_map { [0.00 rgbt <1, 1, 1, 1>] [0.48 rgbt <1, 1, 1, 1>]
      [0.75 rgbt <0.95, 0.95, 0.95, 0.35>] [1 rgbt <1, 1, 1, 0.1>] } }
}

// ---- Sand and sea ---------------------------------------------------------

#declare SandHeight = function(x, z) {
  1.05 - 0.035*max(0, x - 4) - 0.02*max(0, 4 - z) - 0.06*max(0, z - 14) }
isosurface {
  function { y - SandHeight(x, z) - 0.30*(f_noise3d(x*0.12, 0, z*0.2) - 0.5) - 0.06*f_noise3d(x*0.9, 3, z*1.4) }
  contained_by { box { <-70, -6, -40>, <200, 2, 220> } }
  max_gradient 1.4 accuracy 0.005
  pigment { bozo turbulence 0.6 scale <9, 3, 6>
    color_map { [0.2 rgb <0.36, 0.27, 0.17>] [0.8 rgb <0.54, 0.43, 0.29>] } }
  normal { average normal_map {
    [1 ripples 0.8 turbulence 0.25 scale 0.45 translate <40, 0, -60>]
    [1 granite 0.35 scale 2] } }
  finish { ambient 0.05 diffuse 0.85 specular 0.12 roughness 0.02 }
}
plane { y, -5.5 pigment { rgb <0.3, 0.25, 0.18> } }
plane { y, Level
  hollow
  pigment { rgbt <0.10, 0.62, 0.66, 0.75> }
  normal { average normal_map {
    [1 bumps 0.26 scale <1.9, 1, 0.9> rotate y*20]
    [1 bumps 0.20 scale <0.6, 1, 0.35>] } }
  finish { ambient 0 diffuse 0.36 reflection { 0.02, 0.8 fresnel on } conserve_energy
    specular 0.4 roughness 0.004 }
  interior { ior 1.33 fade_distance 0.8 fade_power 1001 fade_color rgb <0.02, 0.22, 0.23> }
}

// ---- Quay -----------------------------------------------------------------

#macro Blocks(Mortar, Dark, Light, Shine)
  pigment {
    brick
    pigment { rgb Mortar },
    pigment { bozo scale 0.5 color_map { [0.3 rgb Dark] [0.7 rgb Light] } }
    brick_size <1.1, 0.55, 9> mortar 0.04
    scale 0.1
  }
  normal { granite 0.5 scale 0.08 }
  finish { ambient 0.05 diffuse 0.8 specular Shine roughness 0.03 }
#end
#declare Quay = texture {
  gradient y turbulence <0, 0.02, 0> scale 10
  texture_map {
    [0.00 Blocks(<0.02, 0.03, 0.015>, <0.04, 0.055, 0.02>, <0.10, 0.11, 0.035>, 0.2)]
    [0.36 Blocks(<0.02, 0.03, 0.015>, <0.05, 0.07, 0.025>, <0.12, 0.13, 0.045>, 0.2)]
    [0.42 Blocks(<0.05, 0.05, 0.04>, <0.13, 0.125, 0.09>, <0.22, 0.20, 0.15>, 0.1)]
    [0.53 Blocks(<0.06, 0.06, 0.05>, <0.17, 0.155, 0.12>, <0.28, 0.25, 0.20>, 0)]
    [0.56 Blocks(<0.16, 0.14, 0.11>, <0.34, 0.30, 0.24>, <0.52, 0.46, 0.37>, 0)]
    [1.00 Blocks(<0.16, 0.14, 0.11>, <0.34, 0.30, 0.24>, <0.52, 0.46, 0.37>, 0)]
  }
}
#declare Coping = texture {
  pigment { granite scale 2 color_map { [0 rgb <0.45, 0.42, 0.36>] [1 rgb <0.62, 0.58, 0.50>] } }
  finish { ambient 0.05 diffuse 0.8 }
}
union {
  box { <-70, -5, 14>, <15, 6.8, 24> texture { Quay } }
  box { <-70, 6.8, 13.8>, <15.2, 7.2, 24.2> texture { Coping } }
  // Parapet on the sea side
  box { <-70, 7.2, 22.8>, <15, 8.3, 24> texture { Quay translate y*2 } }
  box { <-70, 8.3, 22.6>, <15.2, 8.5, 24.2> texture { Coping } }
}

// Tide staff
#declare White = texture { pigment { rgb <0.92, 0.91, 0.86> } finish { ambient 0.06 diffuse 0.85 } }
union {
  box { <-0.65, 0.6, -0.12>, <0.65, 7.2, 0> texture { White } }
  #local H = 2;
  #while (H < 7)
    text { internal 1 str(H, 0, 0) 0.1, 0 scale <0.95, 0.85, 1> translate <-0.52, H - 0.28, -0.16>
      pigment { rgb <0.05, 0.05, 0.06> } }
    box { <0.05, H - 0.04, -0.14>, <0.65, H + 0.04, 0> pigment { rgb <0.65, 0.08, 0.06> } }
    #local K = 1;
    #while (K < 5)
      box { <0.33, H + 0.2*K - 0.03, -0.14>, <0.65, H + 0.2*K + 0.03, 0> pigment { rgb <0.05, 0.05, 0.06> } }
      #local K = K + 1;
    #end
    #local H = H + 1;
  #end
  translate <-6.3, 0, 14>
}

// Ladder and bollards
union {
  cylinder { <-0.32, 0.5, 0>, <-0.32, 8.0, 0>, 0.06 }
  cylinder { < 0.32, 0.5, 0>, < 0.32, 8.0, 0>, 0.06 }
  #local H = 0.8;
  #while (H < 7.2)
    cylinder { <-0.32, H, 0>, <0.32, H, 0>, 0.045 }
    #local H = H + 0.4;
  #end
  translate <2.2, 0, 13.7>
  texture { Iron }
}
#local X = -22;
#while (X < 15)
  union {
    cylinder { <0, 7.2, 0>, <0, 7.8, 0>, 0.2 }
    sphere { 0, 0.3 scale <1, 0.5, 1> translate y*7.8 }
    translate <X, 0, 14.8>
    texture { Iron }
  }
  #local X = X + 6;
#end

// Lobster pots
#local R = seed(7);
#local I = 0;
#while (I < 7)
  intersection {
    cylinder { <0, 0, -0.5>, <0, 0, 0.5>, 0.5 }
    plane { -y, 0 }
    pigment { brick rgb <0.55, 0.38, 0.20>, rgb <0.10, 0.08, 0.06>
      brick_size <0.16, 0.13, 0.16> mortar 0.05 }
    finish { ambient 0.05 diffuse 0.8 }
    rotate y*(rand(R)*24 - 12)
    translate <-1.2 + 1.1*mod(I, 4) + 0.55*(I > 3), 7.2 + 0.5*(I > 3), 16.6>
  }
  #local I = I + 1;
#end

// Pier light
union {
  cylinder { <0, 7.2, 0>, <0, 8.2, 0>, 0.7 texture { Coping } }
  cone { <0, 8.2, 0>, 0.32, <0, 11.2, 0>, 0.22 texture { White } }
  cylinder { <0, 9.2, 0>, <0, 10.2, 0>, 0.31 texture { Paint } }
  cylinder { <0, 11.2, 0>, <0, 11.3, 0>, 0.5 texture { Iron } }
  cylinder { <0, 11.3, 0>, <0, 11.9, 0>, 0.26
    pigment { rgb <0.8, 0.12, 0.08> } finish { ambient 0.2 specular 0.6 } }
  cone { <0, 11.9, 0>, 0.42, <0, 12.3, 0>, 0.05 texture { Iron } }
  translate <12.4, 0, 20>
}

// ---- Far shore ------------------------------------------------------------

object { Lighthouse rotate y*20 translate <168, 8, 172> }
height_field {
  function 300, 300 { min(1, max(0,
    exp(-pow((x - 0.5)/0.24, 2) - pow((y - 0.5)/0.22, 2))*(0.55 + 0.75*f_noise3d(x*9, y*9, 1))
    + 0.25*f_noise3d(x*24, y*24, 5) - 0.28)) }
  smooth
  translate <-0.5, 0, -0.5>
  scale <110, 13, 60>
  translate <171, -0.2, 172>
  pigment { granite scale 20 color_map { [0.2 rgb <0.12, 0.12, 0.10>] [0.8 rgb <0.34, 0.31, 0.26>] } }
  finish { ambient 0.06 diffuse 0.8 }
}

height_field {
  function 300, 80 {
    0.62*pow(sin(pi*y), 1.3)*(0.25 + 0.75*f_noise3d(x*3.4 + 7, 2, 0)*(0.75 + 0.25*x) + 0.16*f_noise3d(x*16, y*8, 4)) }
  smooth
  translate <-0.5, 0, 0>
  scale <900, 62, 160>
  translate <120, -4, 330>
  pigment { bozo scale <60, 30, 20> turbulence 0.4
    color_map { [0.3 rgb <0.22, 0.34, 0.34>] [0.5 rgb <0.30, 0.40, 0.36>] [0.7 rgb <0.19, 0.30, 0.33>] } }
  finish { ambient 0.05 diffuse 0.8 }
}

// ---- Boats ----------------------------------------------------------------

// Keel along z, bow at +z, waterline at y = 0, eight metres long.
#declare Half = function(p) {
  1.4*(1 - pow(max(0, (p - 0.3)/0.7), 2.3))*(0.84 + 0.16*sin(pi*min(1, p/0.6)/2)) }
#declare Sheer = function(p) { 0.95 + 0.62*pow(max(0, p - 0.2), 2) + 0.10*pow(1 - p, 2) }
#declare Keel = function(p) { -0.62 + 0.75*pow(max(0, (p - 0.7)/0.3), 2.4) }
#macro HullPoint(T, U)
  #local Y = Keel(T) + (Sheer(T) - Keel(T))*(1 - pow(cos(U*pi/2), 1.15));
  <Half(T)*pow(sin(U*pi/2), 0.75), Y, 8*(T - 0.5) + 0.35*Y*pow(T, 5)>
#end
#macro Boat(Side, Cabin)
  #local N = 36; #local M = 12;
  union {
    mesh {
      #local I = 0;
      #while (I < N)
        #local J = 0;
        #while (J < M)
          #local A = HullPoint(I/N, J/M);     #local B = HullPoint((I + 1)/N, J/M);
          #local C = HullPoint(I/N, (J + 1)/M); #local D = HullPoint((I + 1)/N, (J + 1)/M);
          triangle { A, B, C } triangle { B, D, C }
          triangle { A*<-1, 1, 1>, B*<-1, 1, 1>, C*<-1, 1, 1> }
          triangle { B*<-1, 1, 1>, D*<-1, 1, 1>, C*<-1, 1, 1> }
          #if (I = 0)
            triangle { A, C, C*<-1, 1, 1> } triangle { A, A*<-1, 1, 1>, C*<-1, 1, 1> }
          #end
          #local J = J + 1;
        #end
        #local I = I + 1;
      #end
      texture {
        gradient y scale 4 translate -y
        texture_map {
          [0.270 pigment { rgb <0.42, 0.10, 0.07> } finish { ambient 0.05 diffuse 0.75 }]
          [0.270 pigment { rgb <0.9, 0.9, 0.86> } finish { ambient 0.05 diffuse 0.8 }]
          [0.295 pigment { rgb <0.9, 0.9, 0.86> } finish { ambient 0.05 diffuse 0.8 }]
          [0.295 pigment { rgb Side } finish { ambient 0.05 diffuse 0.8 specular 0.3 roughness 0.03 }]
        }
      }
    }
    // Deck and gunwale
    mesh {
      #local I = 0;
      #while (I < N)
        #local A = HullPoint(I/N, 0.93) - y*0.02; #local B = HullPoint((I + 1)/N, 0.93) - y*0.02;
        triangle { A, B, A*<-1, 1, 1> } triangle { B, B*<-1, 1, 1>, A*<-1, 1, 1> }
        #local I = I + 1;
      #end
      pigment { rgb <0.55, 0.42, 0.27> } finish { ambient 0.05 diffuse 0.8 }
    }
    #local S = -1;
    #while (S < 2)
      sphere_sweep { linear_spline N + 1
        #local I = 0;
        #while (I <= N) , HullPoint(I/N, 1)*<S, 1, 1>, 0.07 #local I = I + 1; #end
        texture { White } }
      #local S = S + 2;
    #end
    cylinder { HullPoint(0, 1), HullPoint(0, 1)*<-1, 1, 1>, 0.07 texture { White } }
    // Bilge keels, to stand on
    box { <-0.80, -0.60, -1.2>, <-0.72, -0.2, 1.0> texture { Iron } }
    box { < 0.72, -0.60, -1.2>, < 0.80, -0.2, 1.0> texture { Iron } }
    #if (Cabin)
      difference {
        box { <-0.85, 0.7, 0.1>, <0.85, 2.55, 1.9> }
        box { <-0.9, 1.7, 0.35>, <0.9, 2.25, 1.65> }
        box { <-0.65, 1.7, 0>, <0.65, 2.25, 2> }
        texture { White }
      }
      box { <-0.80, 1.65, 0.15>, <0.80, 2.3, 1.85>
        pigment { rgb <0.06, 0.09, 0.11> } finish { specular 0.6 reflection 0.1 } }
      box { <-1.0, 2.55, -0.2>, <1.0, 2.65, 2.15> pigment { rgb Side } finish { ambient 0.05 diffuse 0.8 } }
      cylinder { <0, 2.6, 0.6>, <0, 5.2, 0.6>, 0.06 texture { Iron } }
      cylinder { <0, 5.0, 0.6>, HullPoint(1, 1), 0.02 texture { Iron } }
      cylinder { <0, 5.0, 0.6>, <0, 1, -3.9>, 0.02 texture { Iron } }
      cylinder { <-1.0, 1.0, -1.6>, <-1.0, 1.5, -1.6>, 0.3 pigment { rgb <0.85, 0.35, 0.08> } }
    #else
      box { <-1.2, 0.55, -1.8>, <1.2, 1.0, -1.3> texture { White } }
      box { <-1.2, 0.55, 0.6>, <1.2, 1.0, 1.1> texture { White } }
    #end
  }
#end

// At low water the boats stand on the sand.
#macro Afloat(Thing, X, Z, Heading, Draught, List)
  #local Ground = SandHeight(X, Z) + 0.02;
  #if (Level > Ground + Draught)
    object { Thing rotate y*Heading translate <X, Level, Z> }
  #else
    object { Thing rotate z*List rotate y*Heading translate <X, Ground + Draught, Z> }
  #end
#end
#declare Fishing = Boat(<0.03, 0.20, 0.30>, 1)
#declare Dinghy = object { Boat(<0.75, 0.55, 0.12>, 0) scale 0.5 }
Afloat(Fishing, 3.4, 6.6, 118, 0.58, 7)
Afloat(Dinghy, -4.6, 7.4, 62, 0.28, -14)


// Mooring lines, slack at high water
#macro Line(Heading, From, To)
  #local A = vrotate(From, y*Heading) + <3.4, (Low ? SandHeight(3.4, 6.6) + 0.6 : Level), 6.6>;
  sphere_sweep { linear_spline 25
    #local I = 0;
    #while (I < 25)
      , A + (To - A)*I/24 - y*(Low ? 0.25 : 1.1)*4*(I/24)*(1 - I/24), 0.04
      #local I = I + 1;
    #end
    pigment { rgb <0.55, 0.48, 0.36> } finish { ambient 0.05 diffuse 0.8 } }
#end
Line(118, <0, 1.5, 4.1>, <8, 7.6, 14.6>)
Line(118, <0, 1.0, -4.0>, <-4, 7.6, 14.6>)
