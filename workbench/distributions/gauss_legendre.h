/// Gauss-Legendre quadrature with twenty nodes.
#pragma once

namespace workbench {

struct GaussNode {
  double place, weight;
};

/// The positive nodes on [-1, 1]; the others mirror them.
inline constexpr GaussNode kGaussNodes[] = {
    {0.07652652113349734, 0.15275338713072584}, {0.22778585114164507, 0.14917298647260374},
    {0.37370608871541955, 0.14209610931838204}, {0.5108670019508271, 0.13168863844917664},
    {0.636053680726515, 0.11819453196151841},   {0.7463319064601508, 0.10193011981724044},
    {0.8391169718222188, 0.08327674157670475},  {0.912234428251326, 0.06267204833410907},
    {0.9639719272779138, 0.04060142980038694},  {0.9931285991850949, 0.017614007139152118},
};

/// The integral of f from lo to hi.
template <class Function>
double gaussLegendre(const Function& f, double lo, double hi) {
  const double middle = (lo + hi) / 2, half = (hi - lo) / 2;
  double sum = 0;
  for (const GaussNode& node : kGaussNodes) {
    const double offset = half * node.place;
    sum += node.weight * (f(middle - offset) + f(middle + offset));
  }
  return sum * half;
}

}  // namespace workbench
