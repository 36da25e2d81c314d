/// @file zylSampleField.h
/// The flow that the built-in sample shows: wind past a hot circular chimney.
///
/// A closed-form model of a vortex street, no simulation. The velocity is the curl of a vector
/// potential and so free of divergence: uniform flow past a cylinder (diameter 1 m, axis z through
/// the origin, wind along +x), a boundary layer on its surface and on the floor z = 0, and behind
/// it two rows of counter-rotating vortices that are shed at a Strouhal number of 0.2, grow, and
/// travel downstream. Shedding is oblique: the vortices lean in z. Pressure follows Bernoulli's
/// equation outside the wake and the exact pressure deficit of each vortex inside it. The field
/// repeats after one shedding period.
#ifndef zylSampleField_h
#define zylSampleField_h

#include <array>
#include <vector>

class zylSampleField
{
public:
  using Point = std::array<double, 3>; ///< metres

  struct Values
  {
    double Pressure;                ///< Pa above the pressure far away
    std::array<double, 3> Velocity; ///< m/s
    double Temperature;             ///< K
    double Vorticity;               ///< 1/s, about z
  };

  static constexpr double Radius = 0.5; ///< of the cylinder, m
  static constexpr double Height = 4.0; ///< of the domain, m
  static constexpr double Wind = 10.0;  ///< speed far away, m/s
  static constexpr double Period = 0.5; ///< of the shedding, s

  /// The flow at `time` (seconds; any value).
  explicit zylSampleField(double time);

  Values Evaluate(const Point& p) const;

  /// Tangential stress of the air on a wall (Pa), from the velocity a small step away from it along
  /// the wall's `normal` (unit length, into the air).
  double WallShear(const Point& wall, const Point& normal) const;

  /// Number of vortex cores between the body and the outlet.
  int GetNumberOfVortices() const { return static_cast<int>(this->Vortices.size()); }
  /// Centre of a core at height z, and its radius and strength (0: not formed yet).
  Point GetCore(int vortex, double z, double& radius, double& strength) const;

private:
  struct Vortex
  {
    double Travelled; ///< distance downstream of the place of formation at mid-height
    double Sign;      ///< +1 counter-clockwise, -1 clockwise
  };
  struct Core
  {
    double X, Y, Radius2, Circulation;
  };
  using Cores = std::vector<Core>;

  Core CoreAt(const Vortex& vortex, double z) const;
  Cores CoresAt(double z) const;
  static double StreamFunction(double x, double y, const Cores& cores);
  static double Lift(double x, double y, double z, const Cores& cores);
  double PressureAt(double x, double y, const Cores& cores) const;
  double TemperatureAt(double x, double y, double z, const Cores& cores) const;

  double Time;
  std::vector<Vortex> Vortices;
};

#endif
