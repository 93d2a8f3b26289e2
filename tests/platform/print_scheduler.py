#!/usr/bin/env python3
"""A print scheduler for tests, in a folder of its own: cupsd with its own configuration, socket and backend.

    print_scheduler.py FOLDER PROCESS   starts it, prints the socket's name for CUPS_SERVER; ends it when there is a file
                                        FOLDER/stop, or no PROCESS any more

The queues: "raw" takes bytes as they are, "pdf" has a description by which PDF passes through, "rejects" refuses jobs,
"paused" keeps them. Each finished job is FOLDER/jobs/QUEUE-ID.data with its title, copies and options, a line each, in
QUEUE-ID.txt. Works as root and without; the system's scheduler is never spoken to.
"""
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import time

CUPSD = '/usr/sbin/cupsd'
TOOLS = {'lpadmin': '/usr/sbin/lpadmin', 'cupsreject': '/usr/sbin/cupsreject', 'cupsdisable': '/usr/sbin/cupsdisable'}

BACKEND = '''#!/bin/sh
# a job's data and how it was asked for; without arguments the scheduler asks what devices there are
[ $# -ge 5 ] || exit 0
name=JOBS/$PRINTER-$1
{ [ -n "$6" ] && cat "$6" || cat; } > $name.part
printf '%s\\n' "$3" "$4" "$5" > $name.txt
mv $name.part $name.data
'''

PAPERS = {'A4': (595, 842, 12), 'A3': (842, 1191, 12), 'Letter': (612, 792, 12), 'w288h432': (288, 432, 0)}


def option(key, choices, first):
    lines = ''.join(f'*{key} {choice}/{choice}: ""\n' for choice in choices)
    return f'*OpenUI *{key}/{key}: PickOne\n*OrderDependency: 10 AnySetup *{key}\n*Default{key}: {first}\n{lines}*CloseUI: *{key}\n'


def description():
    """Of a printer that takes PDF as it is."""
    text = '''*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "TEST.PPD"
*Manufacturer: "Test"
*Product: "(Test)"
*ModelName: "Test"
*ShortNickName: "Test"
*NickName: "Test PDF"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*cupsFilter2: "application/pdf application/pdf 0 -"
'''
    text += option('PageSize', PAPERS, 'A4') + option('PageRegion', PAPERS, 'A4')
    text += '*DefaultImageableArea: A4\n*DefaultPaperDimension: A4\n'
    for name, (width, height, edge) in PAPERS.items():
        text += f'*ImageableArea {name}: "{edge} {edge} {width - edge} {height - edge}"\n*PaperDimension {name}: "{width} {height}"\n'
    return (text + option('Duplex', ['None', 'DuplexNoTumble', 'DuplexTumble'], 'None') +
            option('ColorModel', ['Gray', 'RGB'], 'RGB') + option('Resolution', ['300dpi', '600dpi'], '600dpi') +
            '*DefaultFont: Courier\n')


def isThere():
    return all(os.access(t, os.X_OK) for t in [CUPSD, *TOOLS.values()]) and shutil.which('lp') is not None


class PrintScheduler:
    def __init__(self, folder):
        self.folder = folder
        # the name of a socket has to be short
        self.run = tempfile.mkdtemp(prefix='pavane-cups-')
        self.socket = self.run + '/socket'
        self.jobs = folder + '/jobs'
        self.environment = dict(os.environ, CUPS_SERVER=self.socket, LC_ALL='C.UTF-8')
        self.configure()
        self.process = subprocess.Popen([CUPSD, '-f', '-c', self.run + '/cupsd.conf', '-s', self.run + '/cups-files.conf'],
                                        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            self.wait()
            self.makeQueues()
        except BaseException:
            self.close()
            raise

    def write(self, name, text, mode=0o644):
        with open(f'{self.run}/{name}', 'w') as file:
            file.write(text)
        os.chmod(f'{self.run}/{name}', mode)

    def configure(self):
        os.chmod(self.run, 0o755)
        os.makedirs(self.jobs, exist_ok=True)
        for name in ('bin/backend', 'bin/filter', 'bin/daemon', 'data/mime', 'root/ssl', 'root/ppd', 'cache', 'state/certs', 'spool/tmp', 'temp'):
            os.makedirs(f'{self.run}/{name}')
        os.symlink('/usr/lib/cups/daemon/cups-exec', self.run + '/bin/daemon/cups-exec')
        self.write('data/mime/own.types', 'application/pdf pdf string(0,%PDF)\napplication/octet-stream\n')
        self.write('data/mime/own.convs', '')
        self.write('test.ppd', description())
        # mode 700: as root, the scheduler runs it as root
        self.write('bin/backend/keep', BACKEND.replace('JOBS', self.jobs), 0o700)
        names = dict(ServerRoot='root', ServerBin='bin', DataDir='data', CacheDir='cache', StateDir='state', RequestRoot='spool',
                     TempDir='temp', AccessLog='access.log', ErrorLog='error.log', PageLog='page.log')
        text = ''.join(f'{key} {self.run}/{value}\n' for key, value in names.items())
        if os.getuid() == 0:
            text += 'SystemGroup root\n'
        self.write('cups-files.conf', text + 'FileDevice Yes\nSandboxing relaxed\n')
        self.write('cupsd.conf', f'''Listen {self.socket}
LogLevel debug
Browsing Off
WebInterface No
DefaultAuthType None
DirtyCleanInterval 0
<Location />
  Order allow,deny
  Allow all
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  SubscriptionPrivateAccess all
  SubscriptionPrivateValues none
  <Limit All>
    Order allow,deny
    Allow all
  </Limit>
</Policy>
''')

    def wait(self):
        for _ in range(200):
            with socket.socket(socket.AF_UNIX) as probe:
                if self.process.poll() is not None:
                    break
                try:
                    return probe.connect(self.socket)
                except OSError:
                    time.sleep(0.05)
        raise RuntimeError('the scheduler does not start: ' + self.log()[-2000:])

    def log(self):
        try:
            with open(self.run + '/error.log', errors='replace') as file:
                return file.read()
        except OSError:
            return ''

    def tool(self, name, *arguments):
        subprocess.run([TOOLS[name], *arguments], env=self.environment, check=True, stdin=subprocess.DEVNULL, timeout=60,
                       stderr=subprocess.DEVNULL)

    def makeQueues(self):
        add = ('-E', '-v', 'keep:/there', '-o', 'printer-error-policy=abort-job')
        self.tool('lpadmin', '-p', 'raw', *add, '-m', 'raw', '-D', 'All bytes', '-L', 'Büro 3, "left"')
        self.tool('lpadmin', '-p', 'pdf', *add, '-P', self.run + '/test.ppd')
        self.tool('lpadmin', '-p', 'rejects', *add, '-m', 'raw')
        self.tool('cupsreject', '-r', 'Out of toner', 'rejects')
        self.tool('lpadmin', '-p', 'paused', *add, '-m', 'raw')
        self.tool('cupsdisable', '-r', 'Lunch', 'paused')
        self.tool('lpadmin', '-d', 'pdf')

    def close(self):
        self.process.terminate()
        try:
            self.process.wait(20)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        shutil.rmtree(self.run, ignore_errors=True)


if __name__ == '__main__':
    if not isThere():
        print('not installed', flush=True)
        sys.exit(0)
    scheduler = PrintScheduler(os.path.abspath(sys.argv[1]))
    try:
        print(scheduler.socket, flush=True)
        while not os.path.exists(sys.argv[1] + '/stop') and os.path.exists('/proc/' + sys.argv[2]):
            time.sleep(0.05)
    finally:
        scheduler.close()
