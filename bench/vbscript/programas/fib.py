# SPDX-License-Identifier: Apache-2.0
def fib(n):
    if n < 2:
        return n
    return fib(n - 1) + fib(n - 2)


def correr():
    return fib(27)
