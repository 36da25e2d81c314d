/// @file zylViewUsage.h
/// What the command line's help says around the list of options.
#ifndef zylViewUsage_h
#define zylViewUsage_h

inline constexpr const char* zylViewDescription =
  "Shows simulation results, colored by the first array that means something. Without files it "
  "shows a built-in sample.\n";

inline constexpr const char* zylViewFooter = R"(
Clips (--clip, repeatable; what is named is kept, with ":outside" at the end the rest is):
  plane:ox,oy,oz,nx,ny,nz              the side the normal points away from
  box:xmin,xmax,ymin,ymax,zmin,zmax    cylinder:cx,cy,cz,ax,ay,az,radius
  sphere:cx,cy,cz,radius               scalar:ARRAY,lower,upper   (a point array)

Block settings (--block, repeatable): ID|NAME:SETTING=VALUE
  ID and NAME as --list shows them; a group stands for all leaf blocks below it. SETTING is a
  property of the library, KIND.PROPERTY with KIND one of Surface, Contour, FeatureLine, MeshLine,
  VectorGlyph; without KIND it is Surface. Elements of VALUE are separated by commas.
    --block 7:Color=1,0,0   --block Inlet:Visibility=false   --block Walls:MeshLine.Visibility=true

Derived (each repeatable): a cut, lines ... in place of the blocks' surfaces, which are drawn beside
it where --opacity or --block asks for them. --array colors all of them.
  PLANE      ox,oy,oz,nx,ny,nz
  SEEDS      N   (points spread over the data)    line:x1,y1,z1,x2,y2,z2,N
             sphere:cx,cy,cz,radius,N    points:x,y,z[,x,y,z...]    file:PATH  (x y z in each line)
  --set KIND.PROPERTY=VALUE sets a property of the library: KIND is Cut, Crinkle, Isosurface, Curve,
  ClipVolume, Streamlines, Ribbons, SurfaceStreamlines, CurvedGlyphs or VortexCores, with a number
  one of several (Cut2); PROPERTY is its own, or one of its displays as for blocks, or
  Clip=plane:... cuts it away, and Blocks=ID|NAME,... are the blocks that it is made from.
    --cut 0,0,0,1,0,0 --set Cut.MeshLine.Visibility=true --set Cut.Blocks=Volume
  Integrate, Histogram and Probe have properties too: --set Histogram.BinRanges=0,5

In the window: left drag turns, middle or Shift+left drag pans, wheel or right drag zooms; the pointer
at rest shows what is there and its numbers, a click selects, Ctrl+drag selects in a rectangle, a
double click sets the center of rotation; h lists the keys.

Exit codes: 0 done, 1 rendering or writing failed, 2 bad arguments, 3 a file cannot be read,
4 no such array, block, setting, color map or reader, 5 no display for a window, 6 no server,
7 there is nothing to draw.)";

#endif
