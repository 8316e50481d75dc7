[MainBand]
Caption=Utility
Description=Time signals and utility stations
[SubBand.0]
Caption=VLF
Description=Very low frequencies
FreqMin=10000
FreqMax=148500
[SubBand.1]
Caption=60k
Description=Time signals on 60 and 77.5 kHz
FreqMin=58000
FreqMax=80000
[SubBand.2]
Caption=518
Description=Marine text broadcasts
FreqMin=480000
FreqMax=530000
[SubBand.3]
Caption=5M
Description=Standard frequency 5 MHz
FreqMin=4995000
FreqMax=5005000
[SubBand.4]
Caption=10M
Description=Standard frequency 10 MHz
FreqMin=9995000
FreqMax=10005000
[SubBand.5]
Caption=15M
Description=Standard frequency 15 MHz
FreqMin=14990000
FreqMax=15010000
