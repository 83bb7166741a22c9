// SPDX-License-Identifier: GPL-3.0-or-later
/* Request and answer over a pseudo-terminal, with nothing in the way.
 *
 *   pingpong client SECONDS   a client and an instrument as fast as they can; prints JSON:
 *                             the physical limit of this machine
 *   pingpong serve            only the instrument: prints the port, then answers;
 *                             SIGUSR1 prints how many answers it has given
 *
 * The instrument answers every line "READ" with one weight.
 * cc -O2 -Wall -o pingpong pingpong.c -lutil */
#include <errno.h>
#include <pty.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

static const char request[] = "READ\r\n";
static const char answer[] = "ST,GS,+00012.345 kg\r\n";
static volatile sig_atomic_t tell_count;

static void on_usr1(int number) {
  (void)number;
  tell_count = 1;
}

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (double)time.tv_sec + (double)time.tv_nsec / 1e9;
}

static double cpu(const struct rusage* use) {
  return (double)(use->ru_utime.tv_sec + use->ru_stime.tv_sec) +
         (double)(use->ru_utime.tv_usec + use->ru_stime.tv_usec) / 1e6;
}

static void serve(int port) {
  char bytes[4096];
  char line[64];
  size_t length = 0;
  unsigned long answers = 0;
  for (;;) {
    ssize_t got = read(port, bytes, sizeof bytes);
    const int interrupted = got < 0 && errno == EINTR;
    if (tell_count) {
      tell_count = 0;
      printf("%lu\n", answers);
      fflush(stdout);
    }
    if (interrupted) continue;
    if (got <= 0) return;
    for (ssize_t i = 0; i < got; i++) {
      if (bytes[i] != '\n') {
        if (length < sizeof line) line[length++] = bytes[i];
        continue;
      }
      if (length >= 4 && memcmp(line, "READ", 4) == 0) {
        while (write(port, answer, sizeof answer - 1) < 0) {
          if (errno != EINTR) return;
        }
        answers++;
      }
      length = 0;
    }
  }
}

static unsigned long ask(int port, double seconds) {
  char bytes[4096];
  unsigned long trips = 0;
  const double end = now() + seconds;
  while (now() < end) {
    size_t length = 0;
    if (write(port, request, sizeof request - 1) < 0) break;
    do {
      ssize_t got = read(port, bytes + length, sizeof bytes - length);
      if (got <= 0) return trips;
      length += (size_t)got;
    } while (bytes[length - 1] != '\n');
    if (length != sizeof answer - 1) break;
    trips++;
  }
  return trips;
}

int main(int argc, char** argv) {
  int master, slave;
  char path[64];
  struct termios raw;
  struct sigaction usr1 = {.sa_handler = on_usr1}; /* no SA_RESTART: it must break the read */
  if (argc < 2 || openpty(&master, &slave, path, NULL, NULL) != 0) return 1;
  tcgetattr(slave, &raw);
  cfmakeraw(&raw);
  tcsetattr(slave, TCSANOW, &raw);
  if (strcmp(argv[1], "serve") == 0) {
    sigaction(SIGUSR1, &usr1, NULL);
    printf("%s\n", path);
    fflush(stdout);
    serve(master); /* the slave stays open, so that a client may come and go */
    return 0;
  }
  const double seconds = argc > 2 ? atof(argv[2]) : 5;
  const pid_t instrument = fork();
  if (instrument == 0) {
    close(slave);
    serve(master);
    _exit(0);
  }
  const double start = now();
  const unsigned long trips = ask(slave, seconds);
  const double took = now() - start;
  struct rusage mine, other;
  getrusage(RUSAGE_SELF, &mine);
  kill(instrument, SIGKILL);
  wait4(instrument, NULL, 0, &other);
  printf("{\"trips_per_s\": %.0f, \"cpu_percent\": %.1f, \"instrument_cpu_percent\": %.1f}\n",
         (double)trips / took, cpu(&mine) / took * 100, cpu(&other) / took * 100);
  return 0;
}
