#pragma once

namespace velmara {

/// How far a pixel's weighted mean as average_single-inl.h computes it may be from the
/// double-precision sum that defines the result.
///
/// Let u = 2^-24, w the weights of the table, a the samples less 128 (so |a| <= 128), and
/// M = sum(w a) / sum(w).
///  1. The weights used are w (1 + e) with |e| <= weightError, and zero where w is.
///  2. Each term goes through at most n = 2 s + 1 roundings on its way into a sum: its product, s
///     additions in its window row, s additions of window rows; a fused multiply-add saves one. So
///     the sums are sum(w a (1 + r)) and sum(w (1 + r')), with |r|, |r'| <= rho,
///     rho = (1 + weightError) (1 + n u / (1 - n u)) - 1.
///  3. Their exact quotient is off M by at most (128 rho + |M| rho) / (1 - rho)
///     <= 256 rho / (1 - rho).
///  4. Reciprocal, product and the addition of 128 round once each: 128 (2 u + u^2) + 256 u.
///  5. The double-precision sum itself is off M + 128 by at most 255 (2 D + 3) 2^-53 (1 + tiny),
///     which for D <= 961 is less than 1e-9.
/// A mean that is farther than this from every integer truncates like the double-precision sum.
float decisionBound(int searchWinSize, double weightError);

}  // namespace velmara
