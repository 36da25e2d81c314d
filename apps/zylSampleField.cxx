#include "zylSampleField.h"

#include <algorithm>
#include <cmath>

namespace {
// Lengths in diameters, speeds in units of the wind, until the values leave Evaluate().
constexpr double Pi = 3.14159265358979323846;
constexpr double Strouhal = 0.2;
constexpr double Convection = 0.85;               // speed of the vortices
constexpr double Spacing = Convection / Strouhal; // between vortices of one row
constexpr double Formation = 0.75;                // x at which a vortex begins to form
constexpr double Circulation = 1.9;
constexpr double Lean = 0.30;       // shift of the street per unit of height
constexpr double Outflow = 19.;     // vortices are forgotten here, far behind the outlet
constexpr double Density = 1.2;     // kg/m3
constexpr double Viscosity = 0.012; // effective (turbulent), Pa s
constexpr double LiftStrength = 0.06;
constexpr double Ambient = 293.0;
constexpr double WallExcess = 60.0; // K

double Smooth(double low, double high, double x)
{
  const double t = std::clamp((x - low) / (high - low), 0.0, 1.0);
  return t * t * (3.0 - 2.0 * t);
}

double Square(double x)
{
  return x * x;
}

// 0 on the front of the body, 1 where the flow has separated.
double Separated(double x, double y)
{
  return Smooth(-0.15, 0.6, x / std::max(std::hypot(x, y), 1e-9));
}

// Share of the free flow that is left by the boundary layer of the floor.
double FloorProfile(double z)
{
  return std::tanh(std::max(z, 0.0) / 0.3);
}
} // namespace

//--------------------------------------------------------------------------------------------------
zylSampleField::zylSampleField(double time)
  : Time(time)
{
  const double phase = time / Period - std::floor(time / Period);
  const int count = static_cast<int>((Outflow + Lean * Height) / Spacing) + 1;
  for (int k = -1; k < count; ++k)
  {
    this->Vortices.push_back({ (k + phase) * Spacing, -1.0 });
    this->Vortices.push_back({ (k + phase + 0.5) * Spacing, 1.0 });
  }
}

//--------------------------------------------------------------------------------------------------
zylSampleField::Core zylSampleField::CoreAt(const Vortex& vortex, double z) const
{
  const double wave = 0.18 * std::sin(2.0 * Pi * (z / Height + 0.13 * vortex.Sign));
  const double travelled = vortex.Travelled - Lean * (z - 0.5 * Height) + wave;
  const double x = Formation + std::max(travelled, 0.0);
  const double strength = Smooth(0.0, 1.6, travelled) * (1.0 - Smooth(15.0, 19.0, x));
  const double y = -vortex.Sign * (0.28 + 0.30 * (1.0 - std::exp(-0.6 * (x - Formation))));
  const double radius2 = 0.09 + 0.018 * (x - Formation);
  return { x, y, radius2, vortex.Sign * Circulation * strength };
}

//--------------------------------------------------------------------------------------------------
zylSampleField::Cores zylSampleField::CoresAt(double z) const
{
  Cores cores;
  for (const Vortex& vortex : this->Vortices)
  {
    const Core core = this->CoreAt(vortex, z);
    if (core.Circulation != 0.0)
    {
      cores.push_back(core);
    }
  }
  return cores;
}

//--------------------------------------------------------------------------------------------------
double zylSampleField::StreamFunction(double x, double y, const Cores& cores)
{
  const double r2 = std::max(x * x + y * y, Square(Radius));
  const double distance = std::sqrt(r2) - Radius;
  const double layer = 0.05 + 0.45 * Separated(x, y) * std::exp(-0.5 * distance);
  const double potential = y * (1.0 - Square(Radius) / r2);

  // The body carries the opposite of the circulation in the wake.
  double vortices = 0.0;
  for (const Core& core : cores)
  {
    const double d2 = Square(x - core.X) + Square(y - core.Y) + core.Radius2;
    vortices -= core.Circulation / (4.0 * Pi) * std::log(d2 / (r2 + Square(Radius)));
  }
  const double shield = 1.0 - std::exp(-Square(distance / 0.3));
  return potential * (1.0 - std::exp(-distance / layer)) + vortices * shield;
}

//--------------------------------------------------------------------------------------------------
double zylSampleField::Lift(double x, double y, double z, const Cores& cores)
{
  constexpr double k = 4.0 * Pi / Height;
  double sum = 0.0;
  for (const Core& core : cores)
  {
    const double exponent = 0.5 * (Square(x - core.X) + Square(y - core.Y)) / core.Radius2;
    sum += exponent < 30.0 ? core.Circulation * std::exp(-exponent) : 0.0;
  }
  return LiftStrength * sum * (1.0 - std::cos(k * z));
}

//--------------------------------------------------------------------------------------------------
double zylSampleField::PressureAt(double x, double y, const Cores& cores) const
{
  const double r2 = std::max(x * x + y * y, Square(Radius));
  const double a2 = Square(Radius);
  const double c = (x * x - y * y) / r2;
  // 1 - |1 - a2/z2|^2, the pressure coefficient of the potential flow
  const double attached = 2.0 * a2 / r2 * c - Square(a2 / r2);
  const double base = -0.9 * std::exp(-(r2 - a2) / 2.2);
  const double separated = Separated(x, y) * std::exp(-(r2 - a2) / 8.0);
  double coefficient = attached * (1.0 - separated) + base * separated;
  for (const Core& core : cores)
  {
    const double d2 = Square(x - core.X) + Square(y - core.Y) + core.Radius2;
    coefficient -= Square(core.Circulation / (2.0 * Pi)) / d2;
  }
  return 0.5 * Density * Square(Wind) * coefficient;
}

//--------------------------------------------------------------------------------------------------
double zylSampleField::TemperatureAt(double x, double y, double z, const Cores& cores) const
{
  const double distance = std::max(std::hypot(x, y) - Radius, 0.0);
  double cold = 1.0 - std::exp(-distance / (0.05 + 0.22 * Separated(x, y)));
  for (const Core& core : cores)
  {
    const double d2 = Square(x - core.X) + Square(y - core.Y);
    const double share = std::abs(core.Circulation) / Circulation;
    cold *= 1.0 - 0.55 * share * std::exp(-d2 / (1.8 * core.Radius2)) / (1.0 + 0.05 * core.X);
  }
  // The braid that connects the vortices of both rows.
  const double turns = (x + Lean * (z - 0.5 * Height) - Formation) / Spacing - this->Time / Period;
  const double middle = 0.45 * std::cos(2.0 * Pi * turns) * Smooth(0.4, 2.5, x);
  const double width2 = 0.05 + 0.02 * std::max(x, 0.0);
  cold *= 1.0 -
    0.30 * Smooth(0.3, 1.2, x) * std::exp(-Square(y - middle) / width2) /
      (1.0 + 0.1 * std::max(x, 0.0));
  return Ambient + WallExcess * (1.0 - cold);
}

//--------------------------------------------------------------------------------------------------
zylSampleField::Values zylSampleField::Evaluate(const Point& p) const
{
  constexpr double h = 2e-3;
  const double x = p[0], y = p[1], z = p[2];
  const Cores cores = this->CoresAt(z);
  const double psi = StreamFunction(x, y, cores);
  const double east = StreamFunction(x + h, y, cores), west = StreamFunction(x - h, y, cores);
  const double north = StreamFunction(x, y + h, cores), south = StreamFunction(x, y - h, cores);
  const double floor = FloorProfile(z);

  // The vector potential is (0, lift, floor psi): ribs between the vortices carry air up and down.
  const double along =
    (Lift(x, y, z + h, this->CoresAt(z + h)) - Lift(x, y, z - h, this->CoresAt(z - h))) / (2.0 * h);
  const double up = (Lift(x + h, y, z, cores) - Lift(x - h, y, z, cores)) / (2.0 * h);
  const bool wall = std::hypot(x, y) <= Radius * (1.0 + 1e-6);

  Values v;
  v.Pressure = this->PressureAt(x, y, cores);
  v.Temperature = this->TemperatureAt(x, y, z, cores);
  v.Vorticity = -Wind * floor * (east + west + north + south - 4.0 * psi) / (h * h);
  v.Velocity = { Wind * (floor * (north - south) / (2.0 * h) - along),
    -Wind * floor * (east - west) / (2.0 * h), Wind * up };
  if (wall)
  {
    v.Velocity = { 0.0, 0.0, 0.0 };
  }
  return v;
}

//--------------------------------------------------------------------------------------------------
double zylSampleField::WallShear(const Point& wall, const Point& normal) const
{
  constexpr double step = 0.02;
  const auto u = this
                   ->Evaluate({ wall[0] + step * normal[0], wall[1] + step * normal[1],
                     wall[2] + step * normal[2] })
                   .Velocity;
  const double un = u[0] * normal[0] + u[1] * normal[1] + u[2] * normal[2];
  const double tangential = u[0] * u[0] + u[1] * u[1] + u[2] * u[2] - un * un;
  return Viscosity * std::sqrt(std::max(tangential, 0.0)) / step;
}

//--------------------------------------------------------------------------------------------------
zylSampleField::Point zylSampleField::GetCore(
  int vortex, double z, double& radius, double& strength) const
{
  const Core core = this->CoreAt(this->Vortices[vortex], z);
  radius = std::sqrt(core.Radius2);
  strength = core.Circulation / Circulation;
  return { core.X, core.Y, z };
}
